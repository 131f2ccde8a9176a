#include "app/cli/command.h"

#include <QCommandLineParser>

#include <algorithm>

namespace {

// Joins the values of an option that takes several: --range 2 3 reaches the parser as one
// argument, and its values are told apart again by this separator.
constexpr QChar kValueSeparator = QChar(0x1f);

const QCommandLineOption& helpOption() {
    static const QCommandLineOption help(QStringList{QStringLiteral("h"), QStringLiteral("help")},
                                         QStringLiteral("Shows this help."));
    return help;
}

// The values of one occurrence: parts joined by the separator, or given as "LO,HI" (the last
// value keeps any further commas).
QStringList splitValues(const QString& value, qsizetype count) {
    if (count == 1) return {value};
    if (value.contains(kValueSeparator)) return value.split(kValueSeparator);
    QStringList parts = value.split(QLatin1Char(','));
    while (parts.size() > count) parts[count - 1] += QLatin1Char(',') + parts.takeAt(count);
    return parts;
}

bool looksLikeOption(const QString& arg) { return arg.startsWith(QLatin1String("--")); }

// `--range LO HI` and `--range LO,HI` become `--range=LO<sep>HI`. An option that lacks its
// values is left as it is, for the check of its values to report.
QStringList joinMultiValues(const QStringList& args, const std::vector<OptionDeclaration>& declared) {
    QStringList out;
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString& arg = args[i];
        if (arg == QLatin1String("--")) return out + args.mid(i);
        const auto declaration = std::find_if(declared.begin(), declared.end(), [&](const OptionDeclaration& s) {
            return s.valueNames.size() > 1 && arg == s.spelling();
        });
        if (declaration == declared.end()) {
            out << arg;
            continue;
        }
        const qsizetype n = declaration->valueNames.size();
        const QString next = args.value(i + 1);
        qsizetype taken = 0;
        if (next.split(QLatin1Char(',')).size() == n && !looksLikeOption(next)) {
            taken = 1;
        } else if (i + n < args.size() &&
                   std::none_of(args.begin() + i + 1, args.begin() + i + 1 + n, looksLikeOption)) {
            taken = n;
        }
        if (taken == 0) {
            out << arg;
            continue;
        }
        out << arg + QLatin1Char('=') + args.mid(i + 1, taken).join(kValueSeparator);
        i += taken;
    }
    return out;
}

void describe(QCommandLineParser& parser, const std::vector<PositionalDeclaration>& positionals,
              const std::vector<OptionDeclaration>& options) {
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.addOption(helpOption());
    for (const OptionDeclaration& o : options) {
        QString text = o.description;
        if (!o.replacement.isEmpty())
            text = QStringLiteral("Old spelling of %1, still accepted.").arg(o.replacement);
        parser.addOption(QCommandLineOption(o.name, text, o.valueNames.join(QLatin1Char(' '))));
    }
    for (const PositionalDeclaration& p : positionals) parser.addPositionalArgument(p.name, p.description);
}

}  // namespace

Command::Command(QString name, QString synopsis, QString description)
    : m_name(std::move(name)), m_synopsis(std::move(synopsis)), m_description(std::move(description)) {}

QString Command::usageLine() const {
    QString line = QStringLiteral("usage: shuangqu-cli ") + m_name;
    if (!m_synopsis.isEmpty()) line += QLatin1Char(' ') + m_synopsis;
    return line;
}

QString Command::help() const {
    QCommandLineParser parser;
    describe(parser, m_positionals, m_options);
    // Qt's text begins with its own usage line; ours names the command.
    const QString qtText = parser.helpText();
    const qsizetype sections = qtText.indexOf(QLatin1String("\n\n"));
    return usageLine() + QStringLiteral("\n\n") + m_description + QLatin1Char('\n') +
           (sections >= 0 ? qtText.mid(sections + 1) : QString());
}

Command::Parsed Command::parse(const QStringList& arguments) const {
    Parsed result;
    QCommandLineParser parser;
    describe(parser, m_positionals, m_options);
    if (!parser.parse(QStringList{QStringLiteral("shuangqu-cli")} + joinMultiValues(arguments, m_options))) {
        result.error = parser.errorText();
        return result;
    }
    if (parser.isSet(helpOption())) {
        result.helpAsked = true;
        return result;
    }
    Args args;
    for (const OptionDeclaration& declaration : m_options) {
        if (!parser.isSet(declaration.name) && declaration.required) {
            result.error =
                QStringLiteral("missing %1 %2").arg(declaration.spelling(), declaration.valueNames.join(QLatin1Char(' ')));
            return result;
        }
        if (!parser.isSet(declaration.name)) continue;
        result.error = checkOption(declaration, parser.values(declaration.name), args, &result.notes);
        if (!result.error.isEmpty()) return result;
    }
    result.error = checkPositionals(parser.positionalArguments(), &result.notes);
    if (!result.error.isEmpty()) return result;
    args.setPositionals(parser.positionalArguments(), m_positionals);
    result.error = check(args);
    if (result.error.isEmpty()) result.args = std::move(args);
    return result;
}

QString Command::checkOption(const OptionDeclaration& declaration, const QStringList& rawValues, Args& args,
                             QStringList* notes) const {
    if (!declaration.replacement.isEmpty())
        *notes << QStringLiteral("note: %1 is deprecated; use %2").arg(declaration.spelling(), declaration.replacement);
    if (declaration.isFlag()) {
        args.add(declaration, {});
        return {};
    }
    for (const QString& raw : rawValues) {
        const QStringList values = splitValues(raw, declaration.valueNames.size());
        if (values.size() != declaration.valueNames.size())
            return QStringLiteral("%1 takes %2").arg(declaration.spelling(), declaration.valueNames.join(QLatin1Char(' ')));
        for (qsizetype k = 0; k < values.size(); ++k) {
            const QString problem = declaration.kinds[static_cast<size_t>(k)].problem(values[k], notes);
            if (!problem.isEmpty())
                return QStringLiteral("%1 %2: %3").arg(declaration.spelling(), declaration.valueNames[k], problem);
        }
        args.add(declaration, values);
    }
    return {};
}

QString Command::checkPositionals(const QStringList& values, QStringList* notes) const {
    qsizetype required = 0;
    for (const PositionalDeclaration& p : m_positionals) required += p.optional ? 0 : 1;
    const bool rest = !m_positionals.empty() && m_positionals.back().rest;
    if (values.size() < required) return QStringLiteral("missing %1").arg(m_positionals[values.size()].name);
    if (!rest && values.size() > static_cast<qsizetype>(m_positionals.size()))
        return QStringLiteral("unexpected argument \"%1\"")
            .arg(values[static_cast<qsizetype>(m_positionals.size())]);
    for (qsizetype i = 0; i < values.size(); ++i) {
        const PositionalDeclaration& p = m_positionals[std::min(static_cast<size_t>(i), m_positionals.size() - 1)];
        const QString problem = p.kind.problem(values[i], notes);
        if (!problem.isEmpty()) return QStringLiteral("%1: %2").arg(p.name, problem);
    }
    return {};
}

void Command::positional(QString name, QString description, ValueKind kind) {
    m_positionals.push_back({std::move(name), std::move(kind), std::move(description)});
}

void Command::optionalPositional(QString name, QString description, ValueKind kind) {
    m_positionals.push_back({std::move(name), std::move(kind), std::move(description), true});
}

void Command::restPositional(QString name, QString description, ValueKind kind) {
    m_positionals.push_back({std::move(name), std::move(kind), std::move(description), false, true});
}

void Command::flag(QString name, QString description) {
    m_options.push_back(OptionDeclaration::flag(std::move(name), std::move(description)));
}

void Command::option(QString name, const QString& valueNames, QString description,
                     std::vector<ValueKind> kinds) {
    m_options.push_back(
        OptionDeclaration::valued(std::move(name), valueNames, std::move(description), std::move(kinds)));
}

void Command::option(QString name, const QString& valueNames, QString description, ValueKind kind) {
    m_options.push_back(
        OptionDeclaration::valued(std::move(name), valueNames, std::move(description), std::move(kind)));
}

void Command::positionals(std::vector<PositionalDeclaration> declared) {
    for (PositionalDeclaration& p : declared) m_positionals.push_back(std::move(p));
}

void Command::options(std::vector<OptionDeclaration> declared) {
    for (OptionDeclaration& s : declared) m_options.push_back(std::move(s));
}

QString Command::check(const Args&) const { return {}; }

QString Command::usageError(const QString& error) const {
    return m_name + QStringLiteral(": ") + error + QLatin1Char('\n') + usageLine() + QLatin1Char('\n');
}
