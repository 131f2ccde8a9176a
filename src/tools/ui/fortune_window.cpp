#include "tools/ui/fortune_window.h"

#include "tools/ui/fortune_strip.h"
#include "workspace/prompter.h"
#include "workspace/settings.h"
#include "workspace/ui/named_widgets.h"

#include <QButtonGroup>
#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {

const QString kCaption = QStringLiteral("鹤鸣轩彩票购买个人运势计算预测");
const QString kHelp = QStringLiteral(
    "使用方法:进入程序后点'输入生日'输入自己生日,然后选择自己购买彩票的心理类型即可,点'绘运势图'即可,"
    "电脑会根据已设置的系统日期来绘出当天运势图,也可点'输入日期'来观看指定日期的运势情况.以后进入后只用点"
    "'绘运势图'即可,电脑会自动保存您上次的设置");

struct StripDef {
    const char* name;
    const char* caption;
    double top;
    QColor colour;
};
const StripDef kStrips[] = {
    {"Picture1(0)", "体力曲线", 100, QColor(255, 255, 0)},
    {"Picture1(1)", "情绪曲线", 100, QColor(255, 0, 0)},
    {"Picture1(2)", "智力曲线", 100, QColor(0, 255, 0)},
    {"Picture2", "运势曲线", 400, QColor(0, 0, 255)},
};

std::vector<double> toDoubles(const auto& values) { return {values.begin(), values.end()}; }

QLineEdit* field(const QString& name, QWidget* parent) {
    auto* e = new QLineEdit(parent);
    e->setObjectName(name);
    return e;
}

}  // namespace

FortuneWindow::FortuneWindow(Settings& settings, Prompter& prompter, QDate today, QWidget* parent)
    : QWidget(parent, Qt::Window),
      m_settings(settings),
      m_prompter(prompter),
      m_form(FortuneForm::fromSettings(settings, today)) {
    setObjectName(QStringLiteral("frmYunshi"));
    setWindowTitle(kCaption);
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(makeStrips(), 1);
    layout->addWidget(makeControls());
    // The stored personality's option is set on opening, and so the reading is drawn at once.
    render();
    compute();
}

QWidget* FortuneWindow::makeStrips() {
    auto* box = new QWidget(this);
    auto* grid = new QGridLayout(box);
    grid->setVerticalSpacing(4);
    int row = 0;
    for (const StripDef& d : kStrips) {
        auto* caption = new QLabel(QString::fromUtf8(d.caption), box);
        caption->setStyleSheet(QStringLiteral("color: %1; background: black; padding: 2px;").arg(d.colour.name()));
        grid->addWidget(caption, row, 0, Qt::AlignTop);
        auto* strip = new FortuneStrip(QString::fromLatin1(d.name), d.top, d.colour, box);
        grid->addWidget(strip, row, 1);
        grid->setRowStretch(row, d.top > 100 ? 2 : 1);
        m_strips << strip;
        ++row;
    }
    // The ends of the total strip's axis, in popularity units.
    auto* ends = new QVBoxLayout;
    ends->addWidget(new QLabel(QStringLiteral("0"), box), 0, Qt::AlignTop | Qt::AlignRight);
    ends->addStretch();
    ends->addWidget(new QLabel(QStringLiteral("400000"), box), 0, Qt::AlignBottom | Qt::AlignRight);
    grid->addLayout(ends, row - 1, 2);
    m_axis = new FortuneDayAxis(m_strips.back(), box);
    grid->addWidget(m_axis, row, 0, 1, 3);
    return box;
}

QWidget* FortuneWindow::makeTypes() {
    auto* frame = new QGroupBox(QStringLiteral("请选择您购买彩票的心理类型"), this);
    auto* v = new QVBoxLayout(frame);
    m_types = new QButtonGroup(frame);
    for (int n = 1; n <= 4; ++n) {
        const auto type = static_cast<fortune::Personality>(n);
        auto* option = new QRadioButton(fortune::captionOf(type), frame);
        option->setObjectName(QStringLiteral("Option1(%1)").arg(n - 1));
        option->setChecked(type == m_form.type());
        m_types->addButton(option, n);
        v->addWidget(option);
    }
    connect(m_types, &QButtonGroup::idClicked, this, [this](int n) {
        m_form.setBirthText(m_birth->text());
        m_form.setDateText(m_date->text());
        const auto refusal = m_form.choose(static_cast<fortune::Personality>(n));
        render();
        if (refusal) refuse(*refusal);
    });
    return frame;
}

QWidget* FortuneWindow::makeControls() {
    auto* box = new QWidget(this);
    auto* v = new QVBoxLayout(box);
    v->addWidget(new QLabel(QStringLiteral("您的生日是(yyyy-mm-dd):"), box));
    m_birth = field(QStringLiteral("Text1"), box);
    v->addWidget(m_birth);
    m_dateLabel = new QLabel(box);
    v->addWidget(m_dateLabel);
    m_date = field(QStringLiteral("Text4"), box);
    v->addWidget(m_date);
    auto* enterBirth = namedButton(QStringLiteral("Command1"), QStringLiteral("输入生日(&B)"), box);
    auto* enterDate = namedButton(QStringLiteral("Command7"), QStringLiteral("输入日期(&I)"), box);
    auto* draw = namedButton(QStringLiteral("Command2"), QStringLiteral("绘运势图(&D)"), box);
    for (QPushButton* b : {enterBirth, enterDate, draw}) v->addWidget(b);
    v->addWidget(makeTypes());
    m_indexLabel = new QLabel(box);
    v->addWidget(m_indexLabel);
    m_popularity = field(QStringLiteral("Text2"), box);
    m_popularity->setReadOnly(true);
    v->addWidget(m_popularity);
    m_wordLabel = new QLabel(box);
    v->addWidget(m_wordLabel);
    m_word = field(QStringLiteral("Text3"), box);
    m_word->setReadOnly(true);
    v->addWidget(m_word);
    v->addStretch();
    auto* help = namedButton(QStringLiteral("Command6"), QStringLiteral("使用说明(&I)"), box);
    v->addWidget(help);

    connect(enterBirth, &QPushButton::clicked, this, [this] {
        m_form.enterBirth();
        render();
    });
    connect(enterDate, &QPushButton::clicked, this, [this] {
        m_form.setBirthText(m_birth->text());
        m_form.enterDate();
        render();
    });
    connect(draw, &QPushButton::clicked, this, &FortuneWindow::compute);
    connect(m_birth, &QLineEdit::returnPressed, this, &FortuneWindow::compute);
    connect(m_date, &QLineEdit::returnPressed, this, &FortuneWindow::compute);
    connect(help, &QPushButton::clicked, this, [this] { m_prompter.inform(kCaption, kHelp); });
    return box;
}

void FortuneWindow::compute() {
    m_form.setBirthText(m_birth->text());
    m_form.setDateText(m_date->text());
    const auto refusal = m_form.compute();
    render();
    if (refusal) refuse(*refusal);
}

void FortuneWindow::refuse(const FortuneForm::Refusal& r) {
    m_prompter.inform(r.title, r.text);
    QLineEdit* box = r.cleared == FortuneForm::Field::Birth ? m_birth : m_date;
    box->setFocus();
}

void FortuneWindow::render() {
    m_birth->setText(m_form.birthText());
    m_date->setText(m_form.dateText());
    m_birth->setEnabled(m_form.editable() == FortuneForm::Field::Birth);
    m_date->setEnabled(m_form.editable() == FortuneForm::Field::Date);
    if (m_birth->isEnabled()) m_birth->setFocus();
    if (m_date->isEnabled()) m_date->setFocus();
    m_dateLabel->setText(m_form.dateLabel());
    m_indexLabel->setText(m_form.indexLabel());
    m_wordLabel->setText(m_form.wordLabel());
    m_popularity->setText(m_form.popularityText());
    m_word->setText(m_form.wordText());
    const auto& reading = m_form.reading();
    for (FortuneStrip* s : m_strips) s->clear();
    if (!reading) {
        m_axis->setFirstDay({});
        return;
    }
    const fortune::Curves& c = reading->curves;
    m_strips[0]->setValues(toDoubles(c.c23));
    m_strips[1]->setValues(toDoubles(c.c28));
    m_strips[2]->setValues(toDoubles(c.c33));
    m_strips[3]->setValues(toDoubles(c.total));
    m_axis->setFirstDay(m_form.readingDay());
}

void FortuneWindow::closeEvent(QCloseEvent* event) {
    if (!m_form.save(m_settings))
        m_prompter.inform(Settings::kSaveFailedTitle, Settings::saveFailedText(m_settings.fileFor(setting_keys::FortuneBirth)),
                          Prompter::Icon::Warning);
    event->accept();
}

void openFortune(Settings& settings, Prompter& prompter, QWidget* parent) {
    auto* w = new FortuneWindow(settings, prompter, QDate::currentDate(), parent);
    w->setAttribute(Qt::WA_DeleteOnClose);
    w->show();
}
