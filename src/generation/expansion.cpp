#include "generation/expansion.h"

#include "engine/kernel_executor.h"
#include "engine/memory_budget.h"
#include "workspace/prompter.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kFrontPicks = 5;
constexpr int kBackPicks = 2;
constexpr int kSixPicks = 6;

bool isSix(ExpansionKind k) { return k == ExpansionKind::SixPicks || k == ExpansionKind::SixBankers; }
bool withBankers(ExpansionKind k) { return k == ExpansionKind::Bankers || k == ExpansionKind::SixBankers; }

uint64_t binomial(int n, int k) {
    if (k < 0 || n < k) return 0;
    uint64_t c = 1;
    for (int i = 1; i <= k; ++i) c = c * static_cast<uint64_t>(n - k + i) / static_cast<uint64_t>(i);
    return c;
}

// The front slots of a ticket; slot 0 is the zero sentinel of the sorted insert.
using Slots = std::array<int16_t, 8>;

// Every combination of m list positions in the order of m nested counters (the first counter
// slowest), as the values at those positions.
std::vector<Slots> combinations(const std::vector<int16_t>& list, int m) {
    std::vector<Slots> out;
    const int n = static_cast<int>(list.size());
    if (m < 1 || n < m) return out;
    out.reserve(binomial(n, m));
    std::array<int, 8> pos{};
    for (int i = 0; i < m; ++i) pos[static_cast<size_t>(i)] = i;
    while (true) {
        Slots s{};
        for (int i = 0; i < m; ++i) s[static_cast<size_t>(i + 1)] = list[static_cast<size_t>(pos[static_cast<size_t>(i)])];
        out.push_back(s);
        int i = m - 1;
        while (i >= 0 && pos[static_cast<size_t>(i)] == n - m + i) --i;
        if (i < 0) break;
        ++pos[static_cast<size_t>(i)];
        for (int j = i + 1; j < m; ++j) pos[static_cast<size_t>(j)] = pos[static_cast<size_t>(j - 1)] + 1;
    }
    return out;
}

// The sorted-insert step over `width` slots: v goes before the first slot it is less than (or
// into the first empty one) when it is greater than the slot before; a value equal to an
// element is not inserted, and the slots above move up, the last one falling off.
void sortedInsert(Slots& s, int width, int16_t v) {
    for (int i = 1; i <= width; ++i) {
        const auto ui = static_cast<size_t>(i);
        if (v > s[ui - 1] && (s[ui] == 0 || v < s[ui])) {
            for (int j = width; j > i; --j) s[static_cast<size_t>(j)] = s[static_cast<size_t>(j - 1)];
            s[ui] = v;
            return;
        }
    }
}

// The back choices of one row, as (fig6, fig7) pairs in counter order.
std::vector<std::pair<int16_t, int16_t>> backChoices(const ExpansionInput& in) {
    std::vector<std::pair<int16_t, int16_t>> out;
    const auto& list = in.back;
    if (in.kind == ExpansionKind::Bankers && !in.backBankers.empty()) {
        // One counter; only the first back banker is used.
        const int16_t banker = in.backBankers.front();
        for (int16_t v : list) out.emplace_back(v < banker ? std::pair(v, banker) : std::pair(banker, v));
        return out;
    }
    for (size_t f = 0; f < list.size(); ++f)
        for (size_t g = f + 1; g < list.size(); ++g) out.emplace_back(list[f], list[g]);
    return out;
}

// The front part of each row: the combinations with the bankers inserted.
std::vector<Slots> frontParts(const ExpansionInput& in) {
    const int width = isSix(in.kind) ? kSixPicks : kFrontPicks;
    if (!withBankers(in.kind)) return combinations(in.front, width);
    // The row writer branches on width - DanCount, which must lie in 1..width.
    const int m = width - static_cast<int>(in.frontBankers.size());
    if (m < 1 || m > width) return {};
    std::vector<Slots> parts = combinations(in.front, m);
    if (m == width) return parts;
    for (Slots& s : parts)
        for (int16_t banker : in.frontBankers) sortedInsert(s, width, banker);
    return parts;
}

uint8_t toByte(int v) { return static_cast<uint8_t>(std::clamp(v, 0, 255)); }

std::vector<int16_t> listOf(const std::array<int16_t, kNumberSlots>& arr, int from, int count) {
    std::vector<int16_t> out;
    for (int p = 0; p < count && from + p < kNumberSlots; ++p) out.push_back(arr[static_cast<size_t>(from + p)]);
    return out;
}

}  // namespace

ExpansionInput ExpansionInput::fromBoard(const BoardState& board, ExpansionKind kind) {
    ExpansionInput in;
    in.kind = kind;
    // GAganf always reads PickList; the others take the spin's prediction when FromSpin is set.
    const bool spin = board.fromSpin && kind != ExpansionKind::SixPicks;
    const int s = std::max<int>(0, board.front.spinCount);
    const int sh = std::max<int>(0, board.back.spinCount);
    in.front = spin ? listOf(board.front.predictList, 0, s) : listOf(board.front.pickList, 1, s);
    if (!isSix(kind)) in.back = spin ? listOf(board.back.predictList, 0, sh) : listOf(board.back.pickList, 1, sh);
    if (withBankers(kind)) {
        in.frontBankers = listOf(board.front.bankerList, 1, std::max<int>(0, board.front.bankerCount));
        if (!isSix(kind))
            in.backBankers = listOf(board.back.bankerList, 1, std::max<int>(0, board.back.bankerCount));
    }
    if (kind == ExpansionKind::Picks && board.multiMode) {
        in.multi = true;
        const int count = std::clamp<int>(board.multiCount, 0, static_cast<int>(board.multiTable.size()));
        in.multiRows.assign(board.multiTable.begin(), board.multiTable.begin() + count);
    }
    return in;
}

uint64_t expansionRows(const ExpansionInput& in) {
    if (in.multi) return in.multiRows.size();
    const int n = static_cast<int>(in.front.size());
    const int nh = static_cast<int>(in.back.size());
    const bool six = isSix(in.kind);
    const int width = six ? kSixPicks : kFrontPicks;
    const int m = withBankers(in.kind) ? width - static_cast<int>(in.frontBankers.size()) : width;
    if (m < 1 || m > width) return 0;
    const uint64_t front = binomial(n, m);
    if (six) return front;
    const bool oneCounter = in.kind == ExpansionKind::Bankers && !in.backBankers.empty();
    return front * (oneCounter ? static_cast<uint64_t>(nh) : binomial(nh, kBackPicks));
}

double expectedTotal(const BoardState& board, ExpansionKind kind) {
    const int width = isSix(kind) ? kSixPicks : kFrontPicks;
    int32_t t = 1;
    for (int i = 0; i < width; ++i)
        t = static_cast<int32_t>(std::nearbyint(static_cast<double>(static_cast<int64_t>(t) * (board.front.spinCount - i)) / (i + 1)));
    if (isSix(kind)) return t;
    return static_cast<double>(t) * board.back.spinCount * (board.back.spinCount - 1) / 2;
}

ExpansionResult expand(const ExpansionInput& in, EngineProgress* progress, uint64_t availableBytes) {
    ExpansionResult result;
    const uint64_t rows = expansionRows(in);
    const memory_budget::Check check =
        memory_budget::checkTickets(rows, CandidateTable::kBytesPerTicket, availableBytes);
    if (!check.fits) {
        result.refused = true;
        result.message = check.message;
        return result;
    }
    const auto kind =
        isSix(in.kind) ? schema::CandidateKind::SixNumbers : schema::CandidateKind::Combinations;
    auto table = std::make_unique<CandidateTable>(kind, rows);
    result.captionCount = rows;
    if (in.multi) {
        for (uint64_t r = 0; r < rows; ++r)
            for (int k = 1; k <= 7; ++k)
                table->numberColumn(k)[r] = toByte(in.multiRows[r][static_cast<size_t>(k - 1)]);
        result.table = std::move(table);
        return result;
    }

    const std::vector<Slots> fronts = frontParts(in);
    const int width = isSix(in.kind) ? kSixPicks : kFrontPicks;
    std::array<uint8_t*, 7> col{};
    for (int k = 1; k <= table->numberCount(); ++k)
        col[static_cast<size_t>(k - 1)] = table->numberColumn(k).data();
    uint64_t r = 0;
    if (isSix(in.kind)) {
        for (const Slots& s : fronts) {
            for (int k = 0; k < width; ++k) col[static_cast<size_t>(k)][r] = toByte(s[static_cast<size_t>(k + 1)]);
            ++r;
        }
    } else {
        std::vector<std::array<uint8_t, 2>> backs;
        for (const auto& [b6, b7] : backChoices(in)) backs.push_back({toByte(b6), toByte(b7)});
        const uint64_t perFront = backs.size();
        // The reason column is written too (null), so that its pages are touched here, on all
        // threads, and not by the first action of the window.
        ReasonTable::Id* reasons = table->rowReasons().data();
        // Row at is front part at / perFront with back choice at % perFront, so any rows can be
        // written apart from the others.
        const auto fillRows = [&](uint64_t begin, uint64_t end) {
            for (uint64_t at = begin; at < end;) {
                const uint64_t part = at / perFront;
                const uint64_t partEnd = std::min(end, (part + 1) * perFront);
                const Slots& s = fronts[static_cast<size_t>(part)];
                for (int k = 0; k < width; ++k)
                    std::fill(col[static_cast<size_t>(k)] + at, col[static_cast<size_t>(k)] + partEnd,
                              toByte(s[static_cast<size_t>(k + 1)]));
                std::fill(reasons + at, reasons + partEnd, ReasonTable::kNull);
                for (uint64_t row = at; row < partEnd; ++row) {
                    const std::array<uint8_t, 2>& back = backs[static_cast<size_t>(row - part * perFront)];
                    col[5][row] = back[0];
                    col[6][row] = back[1];
                }
                at = partEnd;
            }
        };
        r = fronts.size() * perFront;
        Q_ASSERT(r == rows);
        if (!KernelExecutor::shared().forEachChunk(r, progress, fillRows)) return {};
    }
    Q_ASSERT(r == rows);
    if (progress) progress->progress(rows, rows);
    result.table = std::move(table);
    return result;
}
