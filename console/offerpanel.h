// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "model/upsmodel.h"

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

#include <functional>
#include <optional>
#include <vector>

class AeroButton;
class AeroGroupbox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QVBoxLayout;

/// The commands and settings that the server of a UPS offers, on glass: what this UPS has, and
/// nothing else.
class OfferPanel : public QWidget
{
    Q_OBJECT

public:
    explicit OfferPanel(QWidget *parent = nullptr);

    void setModel(UpsModel *model);
    /// Where a user who wants to is kept; empty: nowhere.
    void setCredentialsFile(const QString &path);
    void applyScale();
    /// Takes up what the UPS now says.
    void refresh();
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// What happened, or will, in a sentence.
    void said(const QString &text);
    void keepUser(const QString &upsId, const QString &user, const QString &password);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    struct Editor
    {
        OfferedSetting setting;
        QWidget *heading; // what it is, above its note
        QLabel *note;
        QWidget *control;
        std::function<QString()> value;
        std::function<void(const QString &)> show;
        AeroButton *apply;
        QString shown; // as the UPS has it
    };

    struct Row
    {
        AeroButton *button;
        QLabel *label;
    };

    void build();
    void arrangeRows();
    AeroGroupbox *addBox(const QString &title, QGridLayout **grid);
    AeroButton *addButton(QWidget *box, const QString &text);
    void addUserRow();
    void addCommands();
    void addSettings();
    void arrangeSettings();
    void arrangeUser();
    bool isNarrow() const;
    Editor makeEditor(QWidget *box, const OfferedSetting &setting);
    void addSwitch(QWidget *box, Editor *editor, const QString &on, const QString &off);
    void addChoice(QWidget *box, Editor *editor) const;
    void addNumber(QWidget *box, Editor *editor) const;
    void addText(QWidget *box, Editor *editor);
    void editLine(QLineEdit *edit, Editor *editor, int longest) const;
    void addHeading(QWidget *box, Editor *editor);
    void guard(AeroButton *button, const QString &consequence, const std::function<void()> &act);
    enum class Danger { None, Asks };
    void give(const QString &words, Danger danger, const std::function<void()> &act);
    void askForUser(const std::function<void()> &then = {});
    void logOut();
    void enableEditors();

    QPointer<UpsModel> model;
    QString credentialsFile;
    QVBoxLayout *column;
    std::vector<QWidget *> parts;
    std::vector<QGridLayout *> grids;
    std::vector<AeroButton *> buttons;
    std::vector<Row> rows; // of commands
    QGridLayout *commandGrid = nullptr;
    int columns = 0;
    std::vector<Editor> editors;
    QGridLayout *settingGrid = nullptr;
    std::optional<bool> settingsAreStacked; // unknown before they are placed
    QGridLayout *userGrid = nullptr;
    std::optional<bool> userIsStacked; // likewise
    AeroButton *logInButton = nullptr;
    AeroButton *logOutButton = nullptr;
    QLabel *userText = nullptr;
};
