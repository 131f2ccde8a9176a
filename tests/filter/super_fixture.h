#pragma once

// A filter window's logic over a table of named tickets, with its filnum.db (moban and Canshu
// as the workspace template makes them) and a small draw history.

#include "filter/candidate_fixture.h"
#include "filter/filter_workspace.h"
#include "filter/super/super_filter.h"
#include "filter/templates/template_recorder.h"
#include "workspace/schema.h"
#include "workspace/scripted_prompter.h"
#include "workspace/sqlite_db.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <vector>

using Ticket = std::array<int, 7>;

inline std::unique_ptr<CandidateTable> ticketTable(const std::vector<Ticket>& tickets) {
    auto t = std::make_unique<CandidateTable>(schema::CandidateKind::Combinations, tickets.size());
    for (size_t r = 0; r < tickets.size(); ++r)
        for (int k = 1; k <= 7; ++k)
            t->numberColumn(k)[r] = static_cast<uint8_t>(tickets[r][static_cast<size_t>(k - 1)]);
    return t;
}

// Draws 2026001 .. 2026000 + n; the last ones as given.
inline DrawHistory historyEndingWith(const std::vector<Ticket>& last, int total = 10) {
    DrawHistory h;
    for (int i = 1; i <= total; ++i) {
        DrawNumbers d{2026000 + i, 31, 32, 33, 34, 35, 11, 12};
        const int fromEnd = total - i;  // 0 for the newest
        if (fromEnd < static_cast<int>(last.size())) {
            const Ticket& k = last[last.size() - 1 - static_cast<size_t>(fromEnd)];
            for (int c = 0; c < 7; ++c) d[static_cast<size_t>(c + 1)] = k[static_cast<size_t>(c)];
        }
        h.numbers.push_back(d);
    }
    h.front.resize(h.numbers.size());
    h.back.resize(h.numbers.size());
    h.both.resize(h.numbers.size());
    return h;
}

class SuperWindowTest : public ::testing::Test {
protected:
    QTemporaryDir dir;
    SqliteDb filterDb;
    DrawHistory history;
    std::unique_ptr<FilterWorkspace> ws;
    std::unique_ptr<SuperFilter> super;
    std::unique_ptr<TemplateRecorder> recorder;
    SuperInputs in;
    ParamWindowState state = ParamWindowState::defaults();
    ScriptedPrompter prompter;

    QString filnumPath() const { return dir.filePath(QStringLiteral("filnum.db")); }

    void open(const std::vector<Ticket>& tickets, FilterSource instance = FilterSource::Expansion) {
        if (!filterDb.isOpen()) {
            ASSERT_TRUE(filterDb.open(filnumPath(), true));
            ASSERT_TRUE(createTemplateTables(filterDb, TemplateKind::FilterDb));
        }
        recorder.reset();
        super.reset();
        if (ws) ws->waitForWrite();
        ws = std::make_unique<FilterWorkspace>(instance, filnumPath());
        auto t = ticketTable(tickets);
        const uint64_t n = t->rowCount();
        ws->openMade(std::move(t), n);
        super = std::make_unique<SuperFilter>(*ws, history, 35, filterDb);
        recorder = std::make_unique<TemplateRecorder>(*ws, *super, filterDb, ParamContext{});
        in = SuperInputs{};
        state = ParamWindowState::defaults();
    }
    void TearDown() override {
        recorder.reset();
        super.reset();
        if (ws) ws->waitForWrite();
    }

    const CandidateTable& table() const { return ws->table(); }
    bool dead(uint64_t row) const { return table().filteredOut().test(row); }
    QString reason(uint64_t row) const { return table().reasonText(row); }

    SuperFilter::Outcome left(SuperButton b, ZoneScope tab = ZoneScope::Front) {
        return super->click(b, FilterWorkspace::Mouse::Left, in, tab, prompter);
    }
    SuperFilter::Outcome right(SuperButton b, ZoneScope tab = ZoneScope::Front) {
        return super->click(b, FilterWorkspace::Mouse::Right, in, tab, prompter);
    }
    // What the prompter was asked, as "kind|title|text" lines.
    QStringList asked() const {
        QStringList out;
        for (const auto& a : prompter.asked()) out << a.kind + QLatin1Char('|') + a.title + QLatin1Char('|') + a.text;
        return out;
    }
};
