#pragma once

// One command of shuangqu-cli ("workspace create", "filter param"): its name, the synopsis of
// its usage line, a one-line description, and the positional arguments and options it takes.
// The command line is parsed by QCommandLineParser and every value checked for its kind before
// the command runs, so an unknown option, a missing value or a word where a number belongs is a
// usage error (exit 2), never ignored.

#include "app/cli/command_args.h"

#include <optional>
#include <vector>

class CliContext;

class Command {
public:
    static constexpr int kDone = 0;
    static constexpr int kRefused = 1;
    static constexpr int kUsage = 2;

    // What running the command may change. A command that changes a workspace runs under the
    // workspace's lock, taken before anything of it is read; the workspace list's commands
    // lock the list themselves; readers take no lock and read inside read transactions.
    enum class Access { Reads, ChangesWorkspace, ChangesList };

    Command(QString name, QString synopsis, QString description);
    virtual ~Command() = default;
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    const QString& name() const { return m_name; }
    const QString& synopsis() const { return m_synopsis; }
    const QString& description() const { return m_description; }
    Access access() const { return m_access; }
    // "usage: shuangqu-cli filter param NAME ..."
    QString usageLine() const;
    // The usage line, the description, the arguments and the options.
    QString help() const;
    // What a usage error prints: the command, the error and the usage line.
    QString usageError(const QString& error) const;

    struct Parsed {
        std::optional<Args> args;  // set when the command may run
        bool helpAsked = false;
        QString error;      // a usage error
        QStringList notes;  // old spellings that were given
    };
    // Parses and checks what follows the command's name.
    Parsed parse(const QStringList& arguments) const;

    // Runs the command: kDone, kRefused after the system's message on standard error, or kUsage.
    virtual int execute(CliContext& ctx, const Args& args) const = 0;

protected:
    // Commands change their workspace unless they say otherwise.
    void setAccess(Access access) { m_access = access; }
    void positional(QString name, QString description, ValueKind kind = ValueKind::text());
    void optionalPositional(QString name, QString description, ValueKind kind = ValueKind::text());
    // The remaining arguments, at least one.
    void restPositional(QString name, QString description, ValueKind kind = ValueKind::text());
    void flag(QString name, QString description);
    void option(QString name, const QString& valueNames, QString description, std::vector<ValueKind> kinds);
    void option(QString name, const QString& valueNames, QString description,
                ValueKind kind = ValueKind::text());
    // Arguments and options that several commands share.
    void positionals(std::vector<PositionalDeclaration> declared);
    void options(std::vector<OptionDeclaration> declared);

    // A check across options once each value passed its own: a message makes a usage error.
    virtual QString check(const Args& args) const;

private:
    QString m_name;
    QString m_synopsis;
    QString m_description;
    Access m_access = Access::ChangesWorkspace;
    std::vector<PositionalDeclaration> m_positionals;
    std::vector<OptionDeclaration> m_options;

    QString checkPositionals(const QStringList& values, QStringList* notes) const;
    QString checkOption(const OptionDeclaration& declaration, const QStringList& rawValues, Args& args,
                        QStringList* notes) const;
};
