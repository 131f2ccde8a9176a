#pragma once

#include "support/cli_runner.h"

#include <gtest/gtest.h>

// A test with a data root of its own.
class CliTest : public ::testing::Test {
protected:
    CliRunner cli;

    // The trimmed output of a call that must succeed.
    QString one(const QStringList& args) {
        const CliRun r = cli.run(args);
        EXPECT_EQ(r.exitCode, 0) << args.join(' ').toStdString() << ": " << r.err.toStdString();
        return r.out.trimmed();
    }
};
