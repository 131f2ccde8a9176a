#include "analysis/ui/view_3d_window.h"

#include <QtDataVisualization/Q3DBars>
#include <QtDataVisualization/Q3DSurface>
#include <QtDataVisualization/qutils.h>

#include <QButtonGroup>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QOpenGLContext>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace {

constexpr float kHighestNumber = 36;  // the top of the largest front zone
constexpr float kFlatWidthToDepth = 10;
const QString kNoGraphics = QStringLiteral("无法创建 OpenGL 图形环境, 3D 走势图不能显示.");

void placeCamera(QAbstract3DGraph* graph, bool flat) {
    graph->setOrthoProjection(flat);
    graph->scene()->activeCamera()->setCameraPreset(flat ? Q3DCamera::CameraPresetFront
                                                         : Q3DCamera::CameraPresetIsometricRightHigh);
}

// The graphs' default asks for eight samples per pixel; without a graphics card that triples the
// cost of every frame, and the bars' edges need none of it.
const QSurfaceFormat& graphFormat() {
    static const QSurfaceFormat format = qDefaultSurfaceFormat(false);
    return format;
}

QString axisTitle(view_3d::Orientation orientation, bool alongAxis) {
    const bool draws = (orientation == view_3d::Orientation::OverTime) == alongAxis;
    return draws ? QStringLiteral("期号") : QStringLiteral("位置");
}

}  // namespace

bool View3dWindow::openGlAvailable() {
    static const bool available = [] {
        QOpenGLContext context;
        return context.create();
    }();
    return available;
}

View3dWindow::View3dWindow(const DrawHistory& history, QWidget* parent) : QWidget(parent), m_history(history) {
    setObjectName(QStringLiteral("frm3D"));
    setWindowTitle(QStringLiteral("历史号码走势3D跟踪显示"));
    m_graphics = openGlAvailable();

    m_stack = new QStackedWidget(this);
    m_noGraphics = new QLabel(kNoGraphics, m_stack);
    m_noGraphics->setObjectName(QStringLiteral("noGraphics"));
    m_noGraphics->setAlignment(Qt::AlignCenter);
    m_stack->addWidget(m_noGraphics);

    auto* layout = new QHBoxLayout(this);
    layout->addWidget(m_stack, 1);
    layout->addWidget(makeControls());
    resize(1000, 640);
    redraw();
}

QWidget* View3dWindow::makeControls() {
    auto* box = new QGroupBox(this);
    auto* column = new QVBoxLayout(box);
    auto* group = new QButtonGroup(box);
    for (int i = 0; i < view_3d::kChartTypes; ++i) {
        auto* option = new QRadioButton(view_3d::chartTypes()[i].caption, box);
        option->setObjectName(QStringLiteral("Option1(%1)").arg(i));
        group->addButton(option, i);
        column->addWidget(option);
        m_options[i] = option;
    }
    m_options[m_type]->setChecked(true);
    connect(group, &QButtonGroup::idClicked, this, &View3dWindow::pickType);

    column->addSpacing(12);
    column->addWidget(new QLabel(QStringLiteral("显示最近期数:"), box));
    m_drawsShown = new QSpinBox(box);
    m_drawsShown->setObjectName(QStringLiteral("drawsShown"));
    const int drawCount = m_history.drawCount();
    m_drawsShown->setRange(1, std::max(drawCount, 1));
    m_drawsShown->setValue(std::min(drawCount, view_3d::kDefaultDrawsShown));
    // Redrawn when the typing is done, not at every digit.
    m_drawsShown->setKeyboardTracking(false);
    connect(m_drawsShown, &QSpinBox::valueChanged, this, &View3dWindow::redraw);
    column->addWidget(m_drawsShown);
    auto* all = new QPushButton(QStringLiteral("全部"), box);
    all->setObjectName(QStringLiteral("showAll"));
    connect(all, &QPushButton::clicked, this, [this] { m_drawsShown->setValue(m_drawsShown->maximum()); });
    column->addWidget(all);
    column->addStretch(1);
    return box;
}

void View3dWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    const int drawCount = std::max(m_history.drawCount(), 1);
    if (m_drawsShown->maximum() == drawCount) return;
    const QSignalBlocker quiet(m_drawsShown);
    const bool allShown = m_drawsShown->value() == m_drawsShown->maximum();
    m_drawsShown->setMaximum(drawCount);
    if (allShown) m_drawsShown->setValue(drawCount);
    redraw();
}

void View3dWindow::pickType(int type) {
    m_type = type;
    redraw();
}

void View3dWindow::redraw() {
    const int last = m_history.drawCount();
    m_table = view_3d::arrange(m_history, view_3d::firstShown(last, m_drawsShown->value()), last,
                               chartType().orientation);
    if (!m_graphics) return;
    if (chartType().graph == view_3d::Graph::Bars)
        showBars();
    else
        showSurface();
}

// Each graph holds an OpenGL context of its own: made when a type first needs it.
// Thousands of bars stay smooth without shadows and with the graph's static optimisation.
QWidget* View3dWindow::embed(QAbstract3DGraph* graph) {
    graph->setShadowQuality(QAbstract3DGraph::ShadowQualityNone);
    graph->setOptimizationHints(QAbstract3DGraph::OptimizationStatic);
    QWidget* box = QWidget::createWindowContainer(graph, m_stack);
    m_stack->addWidget(box);
    return box;
}

void View3dWindow::showBars() {
    const view_3d::ChartType& type = chartType();
    if (!m_bars) {
        m_bars = new Q3DBars(&graphFormat());
        m_barsBox = embed(m_bars);
    }
    auto* rows = new QBarDataArray;
    rows->reserve(m_table.rows());
    for (const std::vector<int>& values : m_table.values) {
        auto* row = new QBarDataRow;
        row->reserve(static_cast<int>(values.size()));
        for (int v : values) row->append(QBarDataItem(static_cast<float>(v)));
        rows->append(row);
    }
    if (m_bars->seriesList().isEmpty()) {
        auto* series = new QBar3DSeries;
        series->setMesh(QAbstract3DSeries::MeshBar);
        series->setItemLabelFormat(QStringLiteral("@rowLabel, @colLabel: @valueLabel"));
        m_bars->addSeries(series);
        m_bars->valueAxis()->setRange(0, kHighestNumber);
        m_bars->valueAxis()->setLabelFormat(QStringLiteral("%d"));
        m_bars->valueAxis()->setTitle(QStringLiteral("号码"));
        m_bars->valueAxis()->setTitleVisible(true);
        m_bars->rowAxis()->setTitleVisible(true);
        m_bars->columnAxis()->setTitleVisible(true);
    }
    QBar3DSeries* series = m_bars->seriesList().front();
    series->dataProxy()->resetArray(rows, view_3d::thinnedLabels(m_table.rowLabels),
                                    view_3d::thinnedLabels(m_table.columnLabels));
    m_bars->rowAxis()->setTitle(axisTitle(type.orientation, false));
    m_bars->columnAxis()->setTitle(axisTitle(type.orientation, true));
    // Steps: the bars of a series stand side by side without a gap.
    m_bars->setBarSpacingRelative(true);
    m_bars->setBarSpacing(type.touching ? QSizeF(0.0, 0.5) : QSizeF(0.5, 0.5));
    placeCamera(m_bars, type.flat);
    m_stack->setCurrentWidget(m_barsBox);
}

void View3dWindow::showSurface() {
    const view_3d::ChartType& type = chartType();
    if (!m_surface) {
        m_surface = new Q3DSurface(&graphFormat());
        m_surfaceBox = embed(m_surface);
    }
    auto* rows = new QSurfaceDataArray;
    rows->reserve(m_table.rows());
    for (int r = 0; r < m_table.rows(); ++r) {
        auto* row = new QSurfaceDataRow;
        row->reserve(m_table.columns());
        for (int c = 0; c < m_table.columns(); ++c)
            row->append(QSurfaceDataItem(QVector3D(float(c + 1), float(m_table.values[r][c]), float(r + 1))));
        rows->append(row);
    }
    if (m_surface->seriesList().isEmpty()) {
        auto* series = new QSurface3DSeries;
        series->setItemLabelFormat(QStringLiteral("(@xLabel, @zLabel): @yLabel"));
        m_surface->addSeries(series);
        m_surface->axisY()->setRange(0, kHighestNumber);
        for (QValue3DAxis* axis : {m_surface->axisX(), m_surface->axisY(), m_surface->axisZ()}) {
            axis->setLabelFormat(QStringLiteral("%d"));
            axis->setTitleVisible(true);
        }
        m_surface->axisY()->setTitle(QStringLiteral("号码"));
    }
    QSurface3DSeries* series = m_surface->seriesList().front();
    series->dataProxy()->resetArray(rows);
    series->setDrawMode(type.filled ? QSurface3DSeries::DrawSurfaceAndWireframe : QSurface3DSeries::DrawWireframe);
    m_surface->axisX()->setTitle(axisTitle(type.orientation, true));
    m_surface->axisZ()->setTitle(axisTitle(type.orientation, false));
    m_surface->axisX()->setRange(1, std::max(m_table.columns(), 2));
    m_surface->axisZ()->setRange(1, std::max(m_table.rows(), 2));
    // From the front the depth is not seen: the x axis takes the width (0: by the axes' ranges).
    m_surface->setHorizontalAspectRatio(type.flat ? kFlatWidthToDepth : 0.0f);
    placeCamera(m_surface, type.flat);
    m_stack->setCurrentWidget(m_surfaceBox);
}
