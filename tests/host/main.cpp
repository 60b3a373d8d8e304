// The smallest possible application, with both spellings of the headers.
#include <KivWidgets/MetroCirclerate>
#include <KivWidgets/SimpleSlideSwitch>
#include <KivWidgets/aerobutton.h>

#include <QtGui/QPixmap>
#include <QtWidgets/QApplication>

#include <cstdio>

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
    const bool works = button->text() == QLatin1String("Start") && dial.getMaxValue() == 100.0 &&
                       control.size() == QSize(78, 27) &&
                       !QPixmap(QStringLiteral(":/Images/batt_ok.png")).isNull();
    std::puts(works ? "host works" : "host fails");
    return works ? 0 : 1;
}
