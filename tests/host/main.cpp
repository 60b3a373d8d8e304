// SPDX-License-Identifier: LicenseRef-all-rights-reserved

// The smallest possible application, with both spellings of the headers, and a form that is
// compiled and loaded: host [FORM].
#include "ui_host.h"

#include <KivWidgets/MetroCirclerate>
#include <KivWidgets/SimpleSlideSwitch>
#include <KivWidgets/aerobutton.h>

#include <QtCore/QFile>
#include <QtGui/QPixmap>
#include <QtUiTools/QUiLoader>
#include <QtWidgets/QApplication>

#include <cstdio>
#include <memory>

namespace {

bool isTheForm(const QWidget *form)
{
    const auto *button = form->findChild<AeroButton *>(QStringLiteral("start"));
    const auto *dial = form->findChild<MetroCirclerate *>(QStringLiteral("dial"));
    return button && button->text() == QLatin1String("Start") && dial &&
           dial->getMaxValue() == 60.0;
}

bool loads(const QString &path)
{
    QFile file(path);
    if (!file.open(QFile::ReadOnly))
        return false;
    const std::unique_ptr<QWidget> form(QUiLoader().load(&file));
    return form && isTheForm(form.get());
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QWidget window;
    auto *button = new AeroButton(&window);
    button->setText(QStringLiteral("Start"));
    MetroCirclerate dial(&window);
    const SimpleSlideSwitch control(&window);
    window.show();
    QApplication::processEvents();
    QWidget compiled;
    Ui::Host().setupUi(&compiled);
    const bool works = button->text() == QLatin1String("Start") && dial.getMaxValue() == 100.0 &&
                       control.size() == QSize(78, 27) &&
                       !QPixmap(QStringLiteral(":/Images/batt_ok.png")).isNull() &&
                       isTheForm(&compiled) && (argc < 2 || loads(QString::fromLocal8Bit(argv[1])));
    std::puts(works ? "host works" : "host fails");
    return works ? 0 : 1;
}
