#pragma once

#include "engine/engine_progress.h"
#include "workspace/ui/work_progress.h"

// Progress of engine work in the window's work progress dialog: made when the work reports
// first, shown once it has run a moment; its cancel button stops the work at the next chunk.
class DialogProgress : public EngineProgress {
public:
    DialogProgress(const QString& label, QWidget* parent, bool cancellable = true,
                   WorkProgress::Blocking blocking = WorkProgress::Blocking::ParentWindow)
        : m_progress(label, parent, cancellable, blocking) {}
    void progress(uint64_t done, uint64_t total) override { m_progress.report(done, total); }
    bool cancelled() const override { return m_progress.cancelled(); }

private:
    WorkProgress m_progress;
};
