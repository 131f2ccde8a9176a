#include "engine/row_formula.h"

#include <QHash>

#include <mutex>

namespace row_formula {

namespace {

struct Registry {
    std::mutex mutex;
    QHash<QByteArray, Loader> loaders;
};

Registry& registry() {
    static Registry r;
    return r;
}

}  // namespace

void registerLoader(const QByteArray& kind, Loader loader) {
    Registry& r = registry();
    const std::lock_guard lock(r.mutex);
    r.loaders.insert(kind, loader);
}

QByteArray save(const RowFormula& formula) { return formula.kind() + '\0' + formula.payload(); }

std::shared_ptr<const RowFormula> load(const QByteArray& bytes) {
    const qsizetype nul = bytes.indexOf('\0');
    if (nul <= 0) return nullptr;
    Loader loader = nullptr;
    {
        Registry& r = registry();
        const std::lock_guard lock(r.mutex);
        loader = r.loaders.value(bytes.left(nul), nullptr);
    }
    return loader ? loader(bytes.mid(nul + 1)) : nullptr;
}

}  // namespace row_formula
