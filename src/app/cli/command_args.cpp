#include "app/cli/command_args.h"

#include "filter/six/six_params.h"

#include <QRegularExpression>

namespace command_args {

std::optional<QList<int>> numbers(const QString& list) {
    static const QRegularExpression separators(QStringLiteral("[,\\s]+"));
    QList<int> out;
    for (const QString& part : list.split(separators, Qt::SkipEmptyParts)) {
        bool ok = false;
        const int v = part.toInt(&ok);
        if (!ok) return std::nullopt;
        out << v;
    }
    return out;
}

std::optional<ParamId> param(const QString& name) {
    if (auto id = param_catalogue::byDrawColumn(name)) return id;
    return param_catalogue::byButton(name);
}

int choiceIndex(const QStringList& choices, const QString& value) {
    for (int i = 0; i < choices.size(); ++i)
        if (choices[i].compare(value, Qt::CaseInsensitive) == 0) return i;
    return -1;
}

}  // namespace command_args

namespace {

// The name a parameter is given by now: its draw column, or Zdqj for 自定区间.
QString currentName(ParamId id) {
    const char* column = param_catalogue::info(id).drawColumn;
    return *column ? QString::fromLatin1(column) : QStringLiteral("Zdqj");
}

QString paramProblem(const QString& name, QStringList* notes, bool orSix) {
    if (orSix && six_params::byEnglish(name)) return {};
    const auto id = command_args::param(name);
    if (!id)
        return QStringLiteral("unknown parameter %1: a draw column such as Znum, Onum, fig1, or Zdqj")
            .arg(name);
    if (!param_catalogue::byDrawColumn(name))
        *notes << QStringLiteral("note: the parameter name %1 is deprecated; use %2")
                      .arg(name, currentName(*id));
    return {};
}

}  // namespace

QString ValueKind::problem(const QString& value, QStringList* notes) const {
    bool ok = true;
    switch (type) {
        case Type::Text:
            return {};
        case Type::Integer:
            value.toInt(&ok);
            return ok ? QString() : QStringLiteral("\"%1\" is not a whole number").arg(value);
        case Type::Number:
            value.toDouble(&ok);
            return ok ? QString() : QStringLiteral("\"%1\" is not a number").arg(value);
        case Type::Numbers:
            return command_args::numbers(value)
                       ? QString()
                       : QStringLiteral("\"%1\" is not a list of whole numbers (1,2,3)").arg(value);
        case Type::Values:
            for (const QString& v : value.split(QLatin1Char(' '), Qt::SkipEmptyParts))
                if (v.toDouble(&ok); !ok)
                    return QStringLiteral("\"%1\" is not a list of numbers (\"1 5 9\")").arg(value);
            return {};
        case Type::Choice:
            return command_args::choiceIndex(choices, value) >= 0
                       ? QString()
                       : QStringLiteral("\"%1\" is not one of %2")
                             .arg(value, choices.join(QStringLiteral(", ")));
        case Type::Param:
            return paramProblem(value, notes, orSix);
        case Type::Params:
            for (const QString& name : value.split(QLatin1Char(','), Qt::SkipEmptyParts))
                if (QString p = paramProblem(name, notes, orSix); !p.isEmpty()) return p;
            return {};
    }
    return {};
}

OptionDeclaration OptionDeclaration::flag(QString name, QString description) {
    return {std::move(name), {}, {}, std::move(description), false, {}};
}

OptionDeclaration OptionDeclaration::valued(QString name, const QString& valueNames, QString description,
                              std::vector<ValueKind> kinds) {
    const QStringList names = valueNames.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    Q_ASSERT(names.size() == static_cast<qsizetype>(kinds.size()));  // one kind per value
    return {std::move(name), names, std::move(kinds), std::move(description), false, {}};
}

OptionDeclaration OptionDeclaration::valued(QString name, const QString& valueNames, QString description, ValueKind kind) {
    return valued(std::move(name), valueNames, std::move(description),
                  std::vector<ValueKind>{std::move(kind)});
}

OptionDeclaration OptionDeclaration::asRequired() const {
    OptionDeclaration o = *this;
    o.required = true;
    return o;
}

OptionDeclaration OptionDeclaration::replacedBy(QString newSpelling) const {
    OptionDeclaration o = *this;
    o.replacement = std::move(newSpelling);
    return o;
}

bool Args::has(const QString& option) const { return m_options.count(option) != 0; }

QStringList Args::values(const QString& option) const {
    const auto it = m_options.find(option);
    return it == m_options.end() ? QStringList() : it->second.last();
}

QString Args::text(const QString& option, const QString& fallback) const {
    return has(option) ? values(option).value(0) : fallback;
}

int Args::integer(const QString& option, int fallback) const {
    return has(option) ? values(option).value(0).toInt() : fallback;
}

QList<int> Args::numbers(const QString& option) const {
    return command_args::numbers(text(option)).value_or(QList<int>());
}

int Args::choice(const QString& option, int fallback) const {
    const auto it = m_choices.find(option);
    if (!has(option) || it == m_choices.end()) return fallback;
    return command_args::choiceIndex(it->second, text(option));
}

const QList<QStringList>& Args::occurrences(const QString& option) const {
    static const QList<QStringList> none;
    const auto it = m_options.find(option);
    return it == m_options.end() ? none : it->second;
}

int Args::positionalChoice(int i) const {
    if (m_positionalDeclarations.empty()) return -1;
    const size_t declaration = std::min(static_cast<size_t>(i), m_positionalDeclarations.size() - 1);
    return command_args::choiceIndex(m_positionalDeclarations[declaration].kind.choices, positional(i));
}

void Args::add(const OptionDeclaration& declaration, QStringList values) {
    m_options[declaration.name].append(std::move(values));
    if (!declaration.kinds.empty() && declaration.kinds.front().type == ValueKind::Type::Choice)
        m_choices[declaration.name] = declaration.kinds.front().choices;
}

void Args::setPositionals(QStringList values, std::vector<PositionalDeclaration> declared) {
    m_positionals = std::move(values);
    m_positionalDeclarations = std::move(declared);
}
