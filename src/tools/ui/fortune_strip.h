#pragma once

#include <QColor>
#include <QDate>
#include <QWidget>

#include <vector>

// One strip of the fortune window: a curve over the days 0..360 on a black ground with a white
// grid (every 2 days, every 4 units) and a magenta line every 30 days. The value axis runs
// from 0 at the top to `top` at the bottom, so a high curve value is drawn low.
class FortuneStrip : public QWidget {
public:
    FortuneStrip(const QString& objectName, double top, QColor colour, QWidget* parent);

    void setValues(std::vector<double> values);
    void clear();
    const std::vector<double>& values() const { return m_values; }

    // Wide enough for the thirteen dates under the strips.
    QSize sizeHint() const override { return {820, 100}; }
    QSize minimumSizeHint() const override { return {780, 60}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintGrid(class QPainter& p) const;
    QPointF at(int day, double value) const;

    double m_top;
    QColor m_colour;
    std::vector<double> m_values;
};

// The dates under the strips, Label1(0..12): the first day and one every 30 days after it,
// each centred on its day.
class FortuneDayAxis : public QWidget {
public:
    static constexpr int kLabels = 13;
    static constexpr int kDaysApart = 30;

    // The dates stand under `strip`; the axis may be wider, so that the end dates fit.
    FortuneDayAxis(const QWidget* strip, QWidget* parent);
    // An invalid day empties the labels.
    void setFirstDay(QDate day);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void place();
    const QWidget* m_strip;
    QList<class QLabel*> m_labels;
};
