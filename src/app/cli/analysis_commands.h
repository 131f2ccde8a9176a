#pragma once

// analysis trend, fit, kline, means, correlation, transitions, moments, distribution and table:
// the history studied as the analysis windows show it, printed as tab-separated text.

#include "app/cli/session_command.h"

class AnalysisTrendCommand : public SessionCommand {
public:
    AnalysisTrendCommand();

protected:
    QString check(const Args& args) const override;
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class AnalysisFitCommand : public SessionCommand {
public:
    AnalysisFitCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class AnalysisKLineCommand : public SessionCommand {
public:
    AnalysisKLineCommand();

protected:
    QString check(const Args& args) const override;
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class AnalysisMeansCommand : public SessionCommand {
public:
    AnalysisMeansCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class AnalysisCorrelationCommand : public SessionCommand {
public:
    AnalysisCorrelationCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class AnalysisTransitionsCommand : public SessionCommand {
public:
    AnalysisTransitionsCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class AnalysisMomentsCommand : public SessionCommand {
public:
    AnalysisMomentsCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class AnalysisDistributionCommand : public SessionCommand {
public:
    AnalysisDistributionCommand();

protected:
    QString check(const Args& args) const override;
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};

class AnalysisTableCommand : public SessionCommand {
public:
    AnalysisTableCommand();

protected:
    int run(CliContext& ctx, Session& s, const Args& args) const override;
};
