#pragma once

// The fortune window's state without its widgets: the two date boxes and which of them is
// open for typing, the personality, the captions of the labels, the last reading, and the
// birthday to store when the window closes.

#include "tools/fortune.h"

#include <optional>

class Settings;

class FortuneForm {
public:
    enum class Field { None, Birth, Date };

    FortuneForm(QString storedBirth, fortune::Personality type, QDate today);
    // Reads the stored birthday and personality ("SLSS"); unusable values give the defaults.
    static FortuneForm fromSettings(const Settings& settings, QDate today);
    // Writes the birthday and the personality back; false when the store refused.
    bool save(Settings& settings) const;

    const QString& birthText() const { return m_birthText; }
    const QString& dateText() const { return m_dateText; }
    void setBirthText(const QString& t) { m_birthText = t; }
    void setDateText(const QString& t) { m_dateText = t; }
    // The box open for typing (None: both show their values, neither takes input).
    Field editable() const { return m_editable; }
    fortune::Personality type() const { return m_type; }
    const std::optional<fortune::Reading>& reading() const { return m_reading; }
    // The day of the last reading: the dates under the curves count from it.
    QDate readingDay() const { return m_readingDay; }

    QString dateLabel() const;
    QString indexLabel() const;
    QString wordLabel() const;

    // 输入生日: the birthday box empties and takes the typing.
    void enterBirth();
    // 输入日期: the labels speak of the chosen day, the results empty, the date box empties and
    // takes the typing.
    void enterDate();
    // A personality option: it takes effect and the reading is made again at once.
    struct Refusal {
        QString title, text;
        Field cleared = Field::None;  // the box emptied, which then takes the typing
    };
    std::optional<Refusal> choose(fortune::Personality type);
    // 绘运势图, or Enter in a date box: reads the two boxes and makes the reading, or refuses.
    std::optional<Refusal> compute();

    // The texts of the two result boxes: the popularity value and the word.
    QString popularityText() const;
    QString wordText() const;
    // The birthday to store: the last one a reading was made with.
    const QString& storedBirth() const { return m_storedBirth; }

private:
    QString m_birthText;
    QString m_dateText;
    QString m_storedBirth;
    fortune::Personality m_type;
    Field m_editable = Field::None;
    bool m_chosenDay = false;
    std::optional<fortune::Reading> m_reading;
    QDate m_readingDay;
};
