#pragma once

#include "tools/fortune_form.h"

#include <QWidget>

class FortuneDayAxis;
class FortuneStrip;
class Prompter;
class QButtonGroup;
class QLabel;
class QLineEdit;
class Settings;

// frmYunshi: the fortune calculator. It reads the stored birthday and personality when it
// opens, draws the reading of today at once, and stores both when it closes.
class FortuneWindow : public QWidget {
public:
    FortuneWindow(Settings& settings, Prompter& prompter, QDate today, QWidget* parent = nullptr);

    const FortuneForm& form() const { return m_form; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QWidget* makeStrips();
    QWidget* makeControls();
    QWidget* makeTypes();
    void compute();
    void refuse(const FortuneForm::Refusal& r);
    void render();

    Settings& m_settings;
    Prompter& m_prompter;
    FortuneForm m_form;
    QLineEdit* m_birth = nullptr;       // Text1
    QLineEdit* m_date = nullptr;        // Text4
    QLineEdit* m_popularity = nullptr;  // Text2
    QLineEdit* m_word = nullptr;        // Text3
    QLabel* m_dateLabel = nullptr;
    QLabel* m_indexLabel = nullptr;
    QLabel* m_wordLabel = nullptr;
    QButtonGroup* m_types = nullptr;
    QList<FortuneStrip*> m_strips;  // Picture1(i) / Picture2
    FortuneDayAxis* m_axis = nullptr;
};

// Opens the fortune window, without modality; it deletes itself when closed.
void openFortune(Settings& settings, Prompter& prompter, QWidget* parent);
