// The whole import of the bundled history (2933 draws): the full action (copy of the file,
// parse, the three writers with their omission and frequency tables in one transaction), and
// beside it the parameter arithmetic alone.
#include "history/draw_params.h"
#include "history/history_import.h"
#include "history/history_text.h"
#include "workspace/data_root.h"
#include "workspace/scripted_prompter.h"
#include "workspace/session.h"
#include "workspace/settings.h"
#include "workspace/workspace_list.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

const QString kUser = QStringLiteral("bench");

struct Workspace {
    QTemporaryDir dir;
    DataRoot root{dir.path()};
    Settings settings{root.settingsDir()};
    std::unique_ptr<Session> session;

    Workspace() {
        root.ensureFirstStart();
        WorkspaceList list(settings, root);
        list.load();
        list.create(kUser, {});
        session = std::make_unique<Session>(root, settings);
        EnteredWorkspace w;
        w.index = 1;
        w.name = kUser;
        session->open(w);
    }
    QString bundled() const {
        return QDir(root.historyTextFolder()).filePath(QStringLiteral("大乐透历史开奖号码.txt"));
    }
};

void BM_WholeImportBundled(benchmark::State& state) {
    Workspace ws;
    ScriptedPrompter prompter;
    const QString copy = QDir(ws.root.historyTextFolder()).filePath(HistoryImport::copyName(kUser));
    for (auto _ : state) {
        state.PauseTiming();
        QFile::remove(copy);
        state.ResumeTiming();
        const HistoryActionResult r =
            HistoryImport(*ws.session, prompter).importFile(HistoryImport::Mode::Whole, ws.bundled());
        if (!r.done() || ws.session->drawCount() != 2933) state.SkipWithError("the import failed");
    }
    state.counters["draws"] = ws.session->drawCount();
}
BENCHMARK(BM_WholeImportBundled)->Unit(benchmark::kMillisecond);

void BM_ParametersOfBundled(benchmark::State& state) {
    Workspace ws;
    QFile f(ws.bundled());
    f.open(QIODevice::ReadOnly);
    std::vector<DrawNumbers> draws{DrawNumbers{}};
    for (const QByteArray& line : f.readAll().split('\n'))
        if (!history_text::isBlank(line)) draws.push_back(history_text::parseLine(line.trimmed(), 0).draw);
    const game_rules::PositionCentres fit = game_rules::positionCentres(35, 12);
    const draw_params::Omission omission{};
    for (auto _ : state) {
        draw_params::WorkingRow working{};
        for (size_t r = 1; r < draws.size(); ++r) {
            using namespace draw_params;
            const DrawNumbers& d = draws[r];
            const DrawNumbers& p = draws[r - 1];
            benchmark::DoNotOptimize(front(frontOf(d), frontOf(p), omission, 35, fit, Path::Append));
            benchmark::DoNotOptimize(back(backOf(d), backOf(p), omission, 12, fit, Path::Append));
            fillWorkingRow(frontOf(d), backOf(d), working);
            benchmark::DoNotOptimize(
                both(frontOf(d), backOf(d), working, {}, omission, omission, 35, Path::Append));
        }
    }
}
BENCHMARK(BM_ParametersOfBundled)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
