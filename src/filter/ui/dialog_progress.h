#pragma once

#include "filter/engine_progress.h"

#include <QString>

#include <memory>

class QProgressDialog;
class QWidget;

// Progress of engine work in a modal progress dialog; it appears only when the work takes
// longer than a moment, and its cancel button stops the work at the next chunk.
class DialogProgress : public EngineProgress {
public:
    DialogProgress(const QString& label, QWidget* parent, bool cancellable = true);
    ~DialogProgress() override;
    void progress(uint64_t done, uint64_t total) override;
    bool cancelled() const override;

private:
    std::unique_ptr<QProgressDialog> m_dialog;
};
