#pragma once

// What a command of shuangqu-cli declares it takes (positional arguments and options, each
// value with its kind) and what it gets once the command line passed every check (Args).

#include "filter/param/param_catalogue.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <map>
#include <optional>
#include <vector>

// The kind of one value, checked before a command runs: a value of the wrong kind is a usage
// error, never a silent 0.
struct ValueKind {
    enum class Type {
        Text,
        Integer,  // a whole number
        Number,   // a decimal number
        Numbers,  // whole numbers separated by commas or blanks
        Values,   // numbers separated by blanks, as a list box of the filter window holds them
        Choice,   // one of `choices`, any case
        Param,    // a parameter of the filter window by its draw column (Znum, fig1, Zdqj)
        Params,   // parameters separated by commas
    };
    Type type = Type::Text;
    QStringList choices;
    // Param and Params: a parameter of the six-number window by its English name passes too
    // (the command checks it against its --table).
    bool orSix = false;

    static ValueKind text() { return {}; }
    static ValueKind integer() { return {Type::Integer, {}}; }
    static ValueKind number() { return {Type::Number, {}}; }
    static ValueKind numbers() { return {Type::Numbers, {}}; }
    static ValueKind values() { return {Type::Values, {}}; }
    static ValueKind oneOf(QStringList choices) { return {Type::Choice, std::move(choices)}; }
    static ValueKind param() { return {Type::Param, {}}; }
    static ValueKind params() { return {Type::Params, {}}; }
    static ValueKind paramOrSix() { return {Type::Param, {}, true}; }
    static ValueKind paramsOrSix() { return {Type::Params, {}, true}; }

    // Empty when `value` is of this kind, else what is wrong with it. A parameter named by an
    // old spelling adds a note to `notes`.
    QString problem(const QString& value, QStringList* notes) const;
};

// An option: a flag without values, or one or more values (`--range LO HI`).
struct OptionDeclaration {
    QString name;                  // "range", given as --range
    QStringList valueNames;        // {"LO", "HI"}; empty for a flag
    std::vector<ValueKind> kinds;  // one per value
    QString description;
    bool required = false;
    QString replacement;  // set on an old spelling: what to write instead ("--same N")

    static OptionDeclaration flag(QString name, QString description);
    // One value, or several when `valueNames` has several words ("LO HI"), one kind for each.
    static OptionDeclaration valued(QString name, const QString& valueNames, QString description,
                             std::vector<ValueKind> kinds);
    static OptionDeclaration valued(QString name, const QString& valueNames, QString description,
                             ValueKind kind = ValueKind::text());

    OptionDeclaration asRequired() const;
    // The same option as an old spelling of `newSpelling`.
    OptionDeclaration replacedBy(QString newSpelling) const;

    bool isFlag() const { return valueNames.isEmpty(); }
    QString spelling() const { return QStringLiteral("--") + name; }
};

struct PositionalDeclaration {
    QString name;  // "NAME"; "N..." when it takes the rest
    ValueKind kind;
    QString description;
    bool optional = false;
    bool rest = false;  // takes every remaining argument, at least one unless optional
};

// A parsed and checked command line.
class Args {
public:
    bool has(const QString& option) const;
    // The values of the option's last occurrence; empty when it is absent or a flag.
    QStringList values(const QString& option) const;
    QString text(const QString& option, const QString& fallback = {}) const;
    int integer(const QString& option, int fallback = 0) const;
    QList<int> numbers(const QString& option) const;
    // The index of the choice given, or `fallback` when the option is absent.
    int choice(const QString& option, int fallback = 0) const;
    // Every occurrence of a repeatable option, in the order given.
    const QList<QStringList>& occurrences(const QString& option) const;

    const QStringList& positionals() const { return m_positionals; }
    QString positional(int i) const { return m_positionals.value(i); }
    int positionalInteger(int i) const { return m_positionals.value(i).toInt(); }
    int positionalChoice(int i) const;

    // Filled by the parser.
    void add(const OptionDeclaration& declaration, QStringList values);
    void setPositionals(QStringList values, std::vector<PositionalDeclaration> declared);

private:
    std::map<QString, QList<QStringList>> m_options;
    std::map<QString, QStringList> m_choices;
    QStringList m_positionals;
    std::vector<PositionalDeclaration> m_positionalDeclarations;
};

namespace command_args {
// Whole numbers from "1,2,3" or "1 2 3"; nullopt when one is not a number.
std::optional<QList<int>> numbers(const QString& list);
// A parameter by its draw column, or by its button name (an old spelling).
std::optional<ParamId> param(const QString& name);
// The index of `value` among `choices`, any case; -1 when it is none of them.
int choiceIndex(const QStringList& choices, const QString& value);
}  // namespace command_args
