#include "tools/fortune_form.h"

#include "workspace/settings.h"

namespace {
const QString kInputError = QStringLiteral("输入错误");
}  // namespace

FortuneForm::FortuneForm(QString storedBirth, fortune::Personality type, QDate today)
    : m_birthText(storedBirth),
      m_dateText(today.toString(QStringLiteral("yyyy-MM-dd"))),
      m_storedBirth(std::move(storedBirth)),
      m_type(type) {}

FortuneForm FortuneForm::fromSettings(const Settings& settings, QDate today) {
    const QString birth = settings.read(setting_keys::FortuneBirth);
    const auto type = fortune::personalityFromNumber(settings.read(setting_keys::FortuneOption).toInt());
    return FortuneForm(birth, type.value_or(fortune::kDefaultPersonality), today);
}

bool FortuneForm::save(Settings& settings) const {
    return settings.write(setting_keys::FortuneBirth, m_storedBirth) &&
           settings.write(setting_keys::FortuneOption, static_cast<int>(m_type));
}

QString FortuneForm::dateLabel() const {
    return m_chosenDay ? QStringLiteral("输入当日日期(yy-mm-dd):") : QStringLiteral("今天的日期(yyyy-mm-dd):");
}

QString FortuneForm::indexLabel() const {
    return m_chosenDay ? QStringLiteral("您当天的人气指数为:") : QStringLiteral("您今天的运势指数为:");
}

QString FortuneForm::wordLabel() const {
    return m_chosenDay ? QStringLiteral("您当天的人气运势值:") : QStringLiteral("您今天的人气运势值:");
}

void FortuneForm::enterBirth() {
    m_birthText.clear();
    m_editable = Field::Birth;
}

void FortuneForm::enterDate() {
    m_chosenDay = true;
    m_reading.reset();
    m_dateText.clear();
    m_editable = Field::Date;
}

std::optional<FortuneForm::Refusal> FortuneForm::choose(fortune::Personality type) {
    m_type = type;
    return compute();
}

std::optional<FortuneForm::Refusal> FortuneForm::compute() {
    const QDate birth = fortune::parseDate(m_birthText);
    const QDate day = fortune::parseDate(m_dateText);
    if (!birth.isValid() || !day.isValid()) {
        // Whichever box held the bad text, the birthday box is the one emptied.
        m_birthText.clear();
        m_editable = Field::Birth;
        return Refusal{kInputError, QStringLiteral("输入时间错误,请重新输入"), Field::Birth};
    }
    std::optional<fortune::Reading> r = fortune::read(birth, day, m_type);
    if (!r) {
        m_dateText.clear();
        m_editable = Field::Date;
        return Refusal{kInputError, QStringLiteral("输入时间必须比您的生日大,请重新输入"), Field::Date};
    }
    m_reading = std::move(r);
    m_readingDay = day;
    m_storedBirth = m_birthText;
    return std::nullopt;
}

QString FortuneForm::popularityText() const {
    return m_reading ? QString::number(m_reading->popularity) : QString();
}

QString FortuneForm::wordText() const { return m_reading ? m_reading->word : QString(); }
