#pragma once

#include "analysis/view_3d.h"

#include <QWidget>

#include <array>

class Q3DBars;
class Q3DSurface;
class QLabel;
class QPushButton;
class QRadioButton;
class QSpinBox;
class QStackedWidget;
class QAbstract3DGraph;

// The 3D trend view (frm3D): the seven numbers of the newest draws as a 3D (or flat) chart,
// in one of twelve types picked by Option1(0..11). The graphs need OpenGL; where no context
// can be made (a headless session) the window says so in place of the graph and keeps its
// controls.
class View3dWindow : public QWidget {
    Q_OBJECT
public:
    explicit View3dWindow(const DrawHistory& history, QWidget* parent = nullptr);

    const view_3d::ChartType& chartType() const { return view_3d::chartTypes()[m_type]; }
    const view_3d::Table& table() const { return m_table; }
    bool hasGraphics() const { return m_graphics; }
    // The graphs, each made when first shown; null without OpenGL.
    Q3DBars* bars() const { return m_bars; }
    Q3DSurface* surface() const { return m_surface; }

    static bool openGlAvailable();

protected:
    // Shown again after draws were added: the newest are drawn, and all of them when all were.
    void showEvent(QShowEvent* event) override;

private:
    QWidget* makeControls();
    void pickType(int type);
    void redraw();
    void showBars();
    void showSurface();
    QWidget* embed(QAbstract3DGraph* graph);

    const DrawHistory& m_history;
    int m_type = 0;
    bool m_graphics = false;
    view_3d::Table m_table;
    std::array<QRadioButton*, view_3d::kChartTypes> m_options{};  // Option1(0..11)
    QSpinBox* m_drawsShown = nullptr;
    QStackedWidget* m_stack = nullptr;
    QLabel* m_noGraphics = nullptr;
    Q3DBars* m_bars = nullptr;
    Q3DSurface* m_surface = nullptr;
    QWidget* m_barsBox = nullptr;
    QWidget* m_surfaceBox = nullptr;
};
