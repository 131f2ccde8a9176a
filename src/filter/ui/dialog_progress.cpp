#include "filter/ui/dialog_progress.h"

#include <QApplication>
#include <QProgressDialog>

DialogProgress::DialogProgress(const QString& label, QWidget* parent, bool cancellable)
    : m_dialog(std::make_unique<QProgressDialog>(label, cancellable ? QStringLiteral("取消") : QString(), 0, 1000,
                                                 parent)) {
    m_dialog->setObjectName(QStringLiteral("engineProgress"));
    m_dialog->setWindowModality(Qt::WindowModal);
    m_dialog->setMinimumDuration(500);
    m_dialog->setAutoClose(false);
    m_dialog->setValue(0);
}

DialogProgress::~DialogProgress() = default;

void DialogProgress::progress(uint64_t done, uint64_t total) {
    const double share = total == 0 ? 1.0 : static_cast<double>(done) / static_cast<double>(total);
    m_dialog->setValue(static_cast<int>(share * 1000));
    QApplication::processEvents();
}

bool DialogProgress::cancelled() const { return m_dialog->wasCanceled(); }
