// A filnum.db not written by this program: every candidate table loaded from its column image,
// from its rows, or from the image of the previous version, each path checking what it read.
#include "engine/candidate_store.h"
#include "filter/param/param_reason_formula.h"
#include "fuzz_support.h"
#include "workspace/schema.h"
#include "workspace/sqlite_db.h"

SQ_FUZZ_START_APPLICATION

// The formulas of the parameter filters that a stored reason may hold: named so that the
// linker keeps their loader.
[[maybe_unused]] static const auto kFormulaLoader = &ParamReasonFormula::load;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QString path = fuzz_support::scratch().dir.filePath(QStringLiteral("filnum.db"));
    QFile::remove(path);
    if (!fuzz_support::writeFile(path, fuzz_support::bytes(data, size))) return 0;
    SqliteDb db;
    if (!db.open(path)) return 0;
    using Kind = schema::CandidateKind;
    for (Kind kind : {Kind::Combinations, Kind::Wheel, Kind::Template, Kind::Imported, Kind::SixNumbers}) {
        if (!candidate_store::tableExists(db, kind)) continue;
        candidate_store::load(db, kind, nullptr, true);
        candidate_store::load(db, kind, nullptr, false);
    }
    return 0;
}
