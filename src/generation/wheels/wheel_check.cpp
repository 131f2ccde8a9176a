#include "generation/wheels/wheel_check.h"

#include "generation/wheels/subsets.h"

namespace wheels {

CheckResult check(const Wheel& wheel) {
    const Guarantee& g = wheel.guarantee;
    CheckResult r;
    if (!g.valid()) {
        r.error = QStringLiteral("no such guarantee: %1").arg(g.name());
        return r;
    }
    const Block inside = g.n == kMostPositions ? ~Block{0} : (Block{1} << g.n) - 1;
    for (Block b : wheel.blocks) {
        if (size(b) != g.k || (b & ~inside)) {
            r.error = QStringLiteral("a ticket is not %1 positions of 1..%2").arg(g.k).arg(g.n);
            return r;
        }
    }
    forEachSubset(g.n, g.p, [&](uint32_t drawn) {
        for (Block b : wheel.blocks)
            if (size(b & drawn) >= g.t) return;
        if (r.unsatisfied++ == 0) r.example = drawn;
    });
    r.holds = r.unsatisfied == 0;
    return r;
}

}  // namespace wheels
