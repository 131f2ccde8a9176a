#pragma once

#include <cstdint>

// How long work of the engine (expansion, persistence, loading, history filters) reports
// progress and learns that the player cancelled. Polled once per chunk, never per row.
class EngineProgress {
public:
    virtual ~EngineProgress() = default;
    virtual void progress(uint64_t done, uint64_t total) = 0;
    virtual bool cancelled() const { return false; }
};
