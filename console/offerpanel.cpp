// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "offerpanel.h"

#include "danger.h"
#include "display.h"
#include "glass.h"
#include "holdguard.h"
#include "logindialog.h"
#include "model/commandname.h"
#include "theme.h"

#include <aerobutton.h>
#include <aerogroupbox.h>

#include <QtCore/QRegularExpression>
#include <QtWidgets/QAbstractSpinBox>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <utility>

/// A number to type or to step. What is typed stays as it is, permitted or not; steps stay in the
/// range.
class OfferNumberBox : public QAbstractSpinBox
{
    Q_OBJECT
    // For screen readers.
    Q_PROPERTY(double value READ value WRITE setValue)
    Q_PROPERTY(double minimum READ minimum)
    Q_PROPERTY(double maximum READ maximum)

public:
    OfferNumberBox(const NumberRange &permitted, QWidget *parent)
        : QAbstractSpinBox(parent)
        , range(permitted)
    {}

    QLineEdit *edit() const
    {
        return lineEdit();
    }
    /// The least number of the range where the text is none.
    double value() const
    {
        bool isNumber = false;
        const double number = text().toDouble(&isNumber);
        return isNumber && std::isfinite(number) ? number : range.from;
    }
    void setValue(double number)
    {
        const double inside = std::max(range.from, std::min(range.to, number));
        edit()->setText(QString::number(int(inside)));
    }
    double minimum() const
    {
        return range.from;
    }
    double maximum() const
    {
        return range.to;
    }
    void stepBy(int steps) override
    {
        setValue((steps > 0 ? std::floor(value()) : std::ceil(value())) + steps);
        selectAll();
    }
    QSize sizeHint() const override
    {
        QSize hint = QAbstractSpinBox::sizeHint();
        int text = 0;
        for (const double end : {range.from, range.to})
            text = std::max(text, fontMetrics().horizontalAdvance(QString::number(int(end))));
        hint.rwidth() += text;
        return hint;
    }
    QSize minimumSizeHint() const override
    {
        return sizeHint();
    }

protected:
    StepEnabled stepEnabled() const override
    {
        return (value() < range.to ? StepUpEnabled : StepNone) |
               (value() > range.from ? StepDownEnabled : StepNone);
    }

private:
    const NumberRange range;
};

namespace {

constexpr int buttonUnits = 40;
constexpr int mostButtonUnits = 260;
constexpr int usualLength = 200; // of what is typed, in characters

QLabel *inkLabel(QWidget *parent, Glass::Ink ink, const QString &text)
{
    QLabel *label = Theme::label(parent, Theme::Normal, false, text);
    label->setWordWrap(true);
    Glass::setInk(label, ink);
    return label;
}

/// The two choices of a setting that is a switch, the one for "on" first.
std::optional<QPair<QString, QString>> switchOf(const QStringList &choices)
{
    static const QPair<QString, QString> pairs[] = {
        {QStringLiteral("yes"), QStringLiteral("no")},
        {QStringLiteral("on"), QStringLiteral("off")},
        {QStringLiteral("enabled"), QStringLiteral("disabled")},
        {QStringLiteral("true"), QStringLiteral("false")},
    };
    for (const auto &pair : pairs) {
        if (choices.size() == 2 && choices.contains(pair.first) && choices.contains(pair.second))
            return pair;
    }
    return std::nullopt;
}

bool isWhole(double number)
{
    constexpr double largest = 1e9;
    return number == std::floor(number) && std::abs(number) <= largest;
}

/// Whether one range of whole numbers is permitted, which can be stepped through.
bool hasWholeRange(const OfferedSetting &setting)
{
    return setting.ranges.size() == 1 && isWhole(setting.ranges.first().from) &&
           isWhole(setting.ranges.first().to);
}

/// Whether the server declares a number and says no more about it.
bool takesAnyNumber(const OfferedSetting &setting)
{
    return setting.isNumber && setting.choices.isEmpty() && setting.ranges.isEmpty();
}

/// Whether the server says that the UPS takes @p value.
bool permits(const OfferedSetting &setting, const QString &value)
{
    if (!setting.choices.isEmpty())
        return setting.choices.contains(value);
    if (takesAnyNumber(setting)) {
        static const QRegularExpression anyNumber(
            QRegularExpression::anchoredPattern(QStringLiteral(R"(-?[0-9]+(\.[0-9]+)?)")));
        return anyNumber.match(value).hasMatch();
    }
    if (setting.ranges.isEmpty())
        return setting.longest <= 0 || value.size() <= setting.longest;
    static const QRegularExpression plainNumber(
        QRegularExpression::anchoredPattern(QStringLiteral(R"(-?(0|[1-9][0-9]*)(\.[0-9]+)?)")));
    const double number = value.toDouble();
    return plainNumber.match(value).hasMatch() &&
           std::any_of(setting.ranges.cbegin(), setting.ranges.cend(),
                       [number](const NumberRange &range) {
                           return number >= range.from && number <= range.to;
                       });
}

/// Such as "10 to 600"; empty where any text will do.
QString rangesOf(const OfferedSetting &setting)
{
    if (takesAnyNumber(setting))
        return OfferPanel::tr("a number");
    constexpr int digits = 12;
    QStringList texts;
    for (const NumberRange &range : setting.ranges)
        texts += OfferPanel::tr("%1 to %2")
                     .arg(QString::number(range.from, 'g', digits),
                          QString::number(range.to, 'g', digits));
    return setting.choices.isEmpty() ? texts.join(QLatin1String(", ")) : QString();
}

/// Shows the whole text, also where it is longer than what may be typed.
void showText(QLineEdit *edit, const QString &text, int longest)
{
    edit->setMaxLength(std::max(longest, int(text.size())));
    edit->setText(text);
}

} // namespace

OfferPanel::OfferPanel(QWidget *parent)
    : QWidget(parent)
    , column(new QVBoxLayout(this))
{
    column->setContentsMargins(0, 0, 0, 0);
}

void OfferPanel::setModel(UpsModel *newModel)
{
    if (model)
        model->disconnect(this);
    model = newModel;
    if (model) {
        connect(model, &UpsModel::offerChanged, this, &OfferPanel::build);
        connect(model, &UpsModel::userChecked, this, &OfferPanel::refresh);
        connect(model, &UpsModel::commandFinished, this, &OfferPanel::refresh);
    }
    build();
}

void OfferPanel::setCredentialsFile(const QString &path)
{
    credentialsFile = path;
}

void OfferPanel::build()
{
    for (QWidget *part : parts) {
        part->hide();
        part->deleteLater();
    }
    parts.clear();
    grids.clear();
    buttons.clear();
    editors.clear();
    rows.clear();
    commandGrid = nullptr;
    settingGrid = nullptr;
    userGrid = nullptr;
    userText = nullptr;
    logInButton = nullptr;
    logOutButton = nullptr;
    const bool any = model && model->needsUser() &&
                     !(model->offer().commands.isEmpty() && model->offer().settings.isEmpty());
    setVisible(any);
    if (!any)
        return;
    addUserRow();
    addCommands();
    addSettings();
    applyScale();
    refresh();
}

AeroGroupbox *OfferPanel::addBox(const QString &title, QGridLayout **grid)
{
    AeroGroupbox *box = Glass::box(this, title);
    *grid = new QGridLayout(box);
    (*grid)->setColumnStretch(1, 1);
    parts.push_back(box);
    grids.push_back(*grid);
    column->addWidget(box);
    return box;
}

AeroButton *OfferPanel::addButton(QWidget *box, const QString &text)
{
    auto *button = new AeroButton(box);
    Theme::setText(button, Theme::Normal);
    Glass::apply(button, 40);
    button->setColorText(Glass::textColor);
    button->setText(text);
    button->setAccessibleName(text);
    button->setCursor(Qt::PointingHandCursor);
    buttons.push_back(button);
    return button;
}

void OfferPanel::addUserRow()
{
    auto *row = new QWidget(this);
    auto *grid = new QGridLayout(row);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setColumnStretch(2, 1);
    userGrid = grid;
    userIsStacked.reset();
    logInButton = addButton(row, tr("Log in …"));
    logInButton->setObjectName(QStringLiteral("logIn"));
    connect(logInButton, &AeroButton::clicked, this, [this] { askForUser(); });
    logOutButton = addButton(row, tr("Log out"));
    logOutButton->setObjectName(QStringLiteral("logOut"));
    connect(logOutButton, &AeroButton::clicked, this, &OfferPanel::logOut);
    userText = inkLabel(row, Glass::Ink::Text, QString());
    userText->setObjectName(QStringLiteral("commandUser"));
    grid->addWidget(logInButton, 0, 0);
    grid->addWidget(logOutButton, 0, 1);
    arrangeUser();
    parts.push_back(row);
    column->addWidget(row);
}

void OfferPanel::addCommands()
{
    AeroGroupbox *box = nullptr;
    // The harmless ones first.
    for (const bool dangerous : {false, true}) {
        for (const OfferedCommand &command : model->offer().commands) {
            const QString consequence = consequenceOf(command.name);
            if (consequence.isEmpty() == dangerous || isNeverOffered(command.name))
                continue;
            if (!box)
                box = addBox(tr("Commands"), &commandGrid);
            AeroButton *button = addButton(box, wordsOf(command.name));
            button->setObjectName(command.name);
            button->setToolTip(command.name);
            const QString name = command.name;
            const auto act = [this, name] { model->run(name); };
            const bool described = !command.description.isEmpty() &&
                                   command.description != QLatin1String("Description unavailable");
            QLabel *label = nullptr;
            if (dangerous) {
                label =
                    Glass::warning(box, consequence, described ? command.description : QString());
                guard(button, consequence, act);
            } else {
                label = inkLabel(box, Glass::Ink::Faint,
                                 described ? command.description : command.name);
                const QString words = wordsOf(name);
                connect(button, &AeroButton::clicked, this,
                        [=] { give(words, Danger::None, act); });
            }
            button->setAccessibleDescription(label->text());
            rows.push_back({button, label});
        }
    }
    columns = 0;
    arrangeRows();
}

void OfferPanel::arrangeUser()
{
    const bool stacked = isNarrow();
    if (!userGrid || stacked == userIsStacked)
        return;
    userIsStacked = stacked;
    if (stacked)
        userGrid->addWidget(userText, 1, 0, 1, 3);
    else
        userGrid->addWidget(userText, 0, 2);
}

bool OfferPanel::isNarrow() const
{
    constexpr int narrowUnits = 560;
    return width() < Theme::px(narrowUnits);
}

/// Two commands beside each other where there is room.
void OfferPanel::arrangeRows()
{
    constexpr int wideUnits = 760;
    const int wanted = width() >= Theme::px(wideUnits) ? 2 : 1;
    if (!commandGrid || wanted == columns)
        return;
    columns = wanted;
    const int perColumn = (int(rows.size()) + columns - 1) / columns;
    for (int i = 0; i < int(rows.size()); ++i) {
        const int place = 2 * (i / perColumn);
        commandGrid->addWidget(rows[std::size_t(i)].button, i % perColumn, place);
        commandGrid->addWidget(rows[std::size_t(i)].label, i % perColumn, place + 1);
    }
    constexpr int labelColumns[] = {1, 3};
    for (const int place : labelColumns)
        commandGrid->setColumnStretch(place, place < 2 * columns ? 1 : 0);
}

QSize OfferPanel::minimumSizeHint() const
{
    // A narrower panel arranges itself anew, so what it needs now does not count.
    constexpr int leastUnits = 440;
    const QSize least = QWidget::minimumSizeHint();
    return {std::min(least.width(), Theme::px(leastUnits)), least.height()};
}

void OfferPanel::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    arrangeRows();
    arrangeSettings();
    arrangeUser();
}

void OfferPanel::addSettings()
{
    if (model->offer().settings.isEmpty())
        return;
    QGridLayout *grid = nullptr;
    AeroGroupbox *box = addBox(tr("Settings of the UPS"), &grid);
    for (const OfferedSetting &setting : model->offer().settings) {
        Editor editor = makeEditor(box, setting);
        editor.apply = addButton(box, tr("Set"));
        editor.apply->setObjectName(QStringLiteral("set ") + setting.name);
        editor.apply->setAccessibleName(tr("Set %1").arg(wordsOf(setting.name)));
        const QString name = setting.name;
        const auto value = editor.value;
        const auto act = [this, name, value] { model->set(name, value()); };
        const QString consequence = consequenceOfSetting(setting.name);
        if (consequence.isEmpty())
            connect(editor.apply, &AeroButton::clicked, this,
                    [=] { give(wordsOf(name), Danger::None, act); });
        else
            guard(editor.apply, consequence, act);
        addHeading(box, &editor);
        editors.push_back(std::move(editor));
    }
    settingGrid = grid;
    settingsAreStacked.reset();
    arrangeSettings();
}

/// The server's words; they may be the same for several settings, so the name is always there.
void OfferPanel::addHeading(QWidget *box, Editor *editor)
{
    const OfferedSetting &setting = editor->setting;
    editor->heading = new QWidget(box);
    auto *lines = new QVBoxLayout(editor->heading);
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(0);
    const bool described = !setting.description.isEmpty() &&
                           setting.description != QLatin1String("Description unavailable");
    lines->addWidget(inkLabel(editor->heading, Glass::Ink::Text,
                              described ? setting.description : wordsOf(setting.name)));
    editor->note = inkLabel(editor->heading, Glass::Ink::Text, setting.name);
    Theme::setText(editor->note, Theme::Small);
    editor->note->setObjectName(QStringLiteral("note ") + setting.name);
    lines->addWidget(editor->note);
    const QString consequence = consequenceOfSetting(setting.name);
    if (consequence.isEmpty())
        return;
    QLabel *warning = Glass::warning(editor->heading, consequence);
    warning->setObjectName(QStringLiteral("warning ") + setting.name);
    lines->addWidget(warning);
    editor->apply->setAccessibleDescription(warning->text());
}

/// A setting beside its name, or below it where there is little room.
void OfferPanel::arrangeSettings()
{
    const bool stacked = isNarrow();
    if (!settingGrid || stacked == settingsAreStacked)
        return;
    settingsAreStacked = stacked;
    int row = 0;
    for (const Editor &editor : editors) {
        settingGrid->addWidget(editor.heading, row, 0, 1, stacked ? 3 : 1);
        row += stacked ? 1 : 0;
        settingGrid->addWidget(editor.control, row, stacked ? 0 : 1, 1, stacked ? 2 : 1);
        settingGrid->addWidget(editor.apply, row, 2);
        ++row;
    }
    settingGrid->setColumnStretch(0, stacked ? 0 : 1);
    settingGrid->setColumnStretch(1, stacked ? 1 : 0);
}

OfferPanel::Editor OfferPanel::makeEditor(QWidget *box, const OfferedSetting &setting)
{
    Editor editor;
    editor.setting = setting;
    if (const auto words = switchOf(setting.choices))
        addSwitch(box, &editor, words->first, words->second);
    else if (!setting.choices.isEmpty())
        addChoice(box, &editor);
    else if (hasWholeRange(setting))
        addNumber(box, &editor);
    else
        addText(box, &editor);
    editor.control->setObjectName(setting.name);
    editor.control->setAccessibleName(wordsOf(setting.name));
    Theme::setText(editor.control, Theme::Normal);
    editor.shown = setting.value;
    editor.show(setting.value);
    return editor;
}

void OfferPanel::addSwitch(QWidget *box, Editor *editor, const QString &on, const QString &off)
{
    auto *check = new QCheckBox(box);
    editor->control = check;
    // What the UPS has may be neither.
    constexpr const char *otherProperty = "kivOther";
    const auto value = [=] {
        if (check->checkState() == Qt::PartiallyChecked)
            return check->property(otherProperty).toString();
        return check->isChecked() ? on : off;
    };
    const auto say = [=] {
        check->setText(value().replace(QLatin1Char('&'), QLatin1String("&&")));
    };
    editor->value = value;
    editor->show = [=](const QString &shown) {
        const bool isKnown = shown == on || shown == off;
        check->setProperty(otherProperty, shown);
        check->setTristate(!isKnown);
        if (isKnown)
            check->setCheckState(shown == on ? Qt::Checked : Qt::Unchecked);
        else
            check->setCheckState(Qt::PartiallyChecked);
        say();
    };
    connect(check, &QCheckBox::clicked, this, [=] {
        say();
        enableEditors();
    });
}

void OfferPanel::addChoice(QWidget *box, Editor *editor) const
{
    auto *combo = new QComboBox(box);
    editor->control = combo;
    const QStringList choices = editor->setting.choices;
    // Items are plain text in a combo box.
    combo->addItems(choices);
    editor->value = [=] { return combo->currentText(); };
    editor->show = [=](const QString &value) {
        // What the UPS has may be none of the choices; it then stands before them.
        while (combo->count() > choices.size())
            combo->removeItem(0);
        if (!choices.contains(value))
            combo->insertItem(0, value);
        combo->setCurrentIndex(combo->findText(value));
    };
    connect(combo, &QComboBox::currentTextChanged, this, &OfferPanel::enableEditors);
}

void OfferPanel::addNumber(QWidget *box, Editor *editor) const
{
    auto *number = new OfferNumberBox(editor->setting.ranges.first(), box);
    editor->control = number;
    editLine(number->edit(), editor, usualLength);
}

void OfferPanel::addText(QWidget *box, Editor *editor)
{
    auto *edit = new QLineEdit(box);
    editor->control = edit;
    const OfferedSetting &setting = editor->setting;
    const int longest = setting.longest > 0 ? std::min(setting.longest, usualLength) : usualLength;
    editLine(edit, editor, longest);
    // What is typed or pasted beyond that is left out.
    const QString words = wordsOf(setting.name);
    connect(edit, &QLineEdit::inputRejected, this,
            [=] { Q_EMIT said(tr("%1: at most %2 characters").arg(words).arg(longest)); });
}

/// Makes the text of @p edit the value of the setting.
void OfferPanel::editLine(QLineEdit *edit, Editor *editor, int longest) const
{
    editor->value = [=] { return edit->text(); };
    editor->show = [=](const QString &value) { showText(edit, value, longest); };
    connect(edit, &QLineEdit::textChanged, this, &OfferPanel::enableEditors);
}

void OfferPanel::guard(AeroButton *button, const QString &consequence,
                       const std::function<void()> &act)
{
    auto *guarding = new HoldGuard(button);
    const QString words = button->accessibleName();
    connect(guarding, &HoldGuard::began, this,
            [=] { Q_EMIT said(tr("Keep holding. %1").arg(consequence)); });
    connect(guarding, &HoldGuard::broken, this,
            [=] { Q_EMIT said(tr("%1: not given. Hold for two seconds.").arg(words)); });
    connect(guarding, &HoldGuard::armed, this,
            [=] { Q_EMIT said(tr("%1 Press again to confirm.").arg(consequence)); });
    connect(guarding, &HoldGuard::held, this, [=] { give(words, Danger::Asks, act); });
}

/// Gives a command as soon as there is a user. What is dangerous is not given long after the press:
/// it must be pressed again.
void OfferPanel::give(const QString &words, Danger danger, const std::function<void()> &act)
{
    if (!model)
        return;
    if (!model->needsUser() || !model->user().isEmpty()) {
        act();
        return;
    }
    askForUser([=] {
        if (danger == Danger::None)
            act();
        else
            Q_EMIT said(tr("%1: not given yet. Hold it for two seconds again.").arg(words));
    });
}

void OfferPanel::askForUser(const std::function<void()> &then)
{
    if (!model)
        return;
    auto *dialog = new LoginDialog(model, credentialsFile, window());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &LoginDialog::keep, this, &OfferPanel::keepUser);
    const QPointer<UpsModel> asked = model;
    connect(dialog, &QDialog::accepted, this, [this, asked, then] {
        refresh();
        // Another UPS may be shown by now.
        if (!asked || asked != model)
            return;
        if (then)
            then();
        else
            Q_EMIT said(tr("Logged in as %1.").arg(model->user()));
    });
    dialog->open();
}

void OfferPanel::logOut()
{
    if (!model)
        return;
    const QString user = model->user();
    model->logOut();
    refresh();
    Q_EMIT said(tr("%1 is logged out.").arg(user));
}

void OfferPanel::enableEditors()
{
    for (const Editor &editor : editors) {
        const QString value = editor.value();
        const bool differs = value != editor.shown && !value.isEmpty();
        const bool canSet = differs && permits(editor.setting, value);
        editor.apply->setEnabled(canSet);
        // Disabled glass is light: at night it would draw the eye, by day light text would be lost.
        const double faint = Theme::isDark() ? 0.4 : 0.6;
        editor.apply->setOpacity(canSet ? 1.0 : faint);
        editor.apply->setColorText(canSet || Theme::isDark() ? Glass::textColor
                                                             : Glass::colorOf(Glass::Ink::Text));
        const QString ranges = rangesOf(editor.setting);
        QString note = editor.setting.name;
        const bool isWrong = differs && !canSet && !ranges.isEmpty();
        if (!ranges.isEmpty())
            note += Theme::separator() + (isWrong ? tr("only %1").arg(ranges) : ranges);
        if (editor.note->text() == note)
            continue;
        editor.note->setText(note);
        Glass::setInk(editor.note, isWrong ? Glass::Ink::Danger : Glass::Ink::Text);
        editor.control->setAccessibleDescription(note);
    }
}

void OfferPanel::refresh()
{
    if (!model || !userText)
        return;
    const QString server = model->commandServer().address;
    QStringList sentences;
    if (!model->user().isEmpty()) {
        sentences += server.isEmpty()
                         ? tr("Commands are given as %1.").arg(model->user())
                         : tr("Commands are given as %1 to %2.").arg(model->user(), server);
    } else {
        if (!model->userProblem().isEmpty())
            sentences += model->userProblem() + QLatin1Char('.');
        sentences += tr("Nobody is logged in. Commands ask for a user.");
    }
    const QString text = sentences.join(QLatin1Char(' '));
    if (userText->text() != text)
        userText->setText(text);
    const QString logIn = model->user().isEmpty() ? tr("Log in …") : tr("Other user …");
    if (logInButton->text() != logIn) {
        logInButton->setText(logIn);
        logInButton->setAccessibleName(logIn);
        applyScale();
    }
    logOutButton->setVisible(!model->user().isEmpty());
    const QHash<QString, QString> &variables = model->snapshot().variables;
    for (Editor &editor : editors) {
        const auto now = variables.constFind(editor.setting.name);
        if (now == variables.cend() || *now == editor.shown)
            continue;
        // What somebody is about to set stays.
        const bool untouched = editor.value() == editor.shown;
        editor.shown = *now;
        if (untouched || editor.value() == *now)
            editor.show(*now);
    }
    enableEditors();
}

void OfferPanel::applyScale()
{
    const int title = Glass::titleRoom();
    const int side = Theme::px(14);
    column->setSpacing(Theme::px(Theme::spacing));
    for (QGridLayout *grid : grids) {
        grid->setContentsMargins(side, title, side, Theme::px(10));
        grid->setHorizontalSpacing(Theme::px(Theme::margin));
        grid->setVerticalSpacing(Theme::px(Theme::spacing));
    }
    // Glass buttons have bold texts.
    const QFontMetrics metrics(Theme::font(Theme::Normal, true));
    int width = 0;
    for (const AeroButton *button : buttons)
        width = std::max(width, metrics.horizontalAdvance(button->text()) + Theme::px(28));
    width = std::min(width, Theme::px(mostButtonUnits));
    const int height = std::max(Theme::touchSize(), Theme::px(buttonUnits));
    for (AeroButton *button : buttons) {
        // Those of commands stand in columns.
        const bool alone = button == logInButton || button == logOutButton ||
                           button->objectName().startsWith(QLatin1String("set "));
        button->setFixedSize(
            alone ? metrics.horizontalAdvance(button->text()) + Theme::px(36) : width, height);
    }
    for (const Editor &editor : editors)
        editor.control->setFixedHeight(height);
    enableEditors(); // in the colours of the theme
}

#include "offerpanel.moc"
