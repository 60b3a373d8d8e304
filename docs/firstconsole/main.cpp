// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include <KivWidgets/AeroLinebar>
#include <KivWidgets/MetroCirclerate>
#include <KivWidgets/MetroShelter>

#include <QtCore/QTimer>
#include <QtWidgets/QApplication>

#include <cmath>

class FirstConsole : public QWidget
{
public:
    FirstConsole();

private:
    void showMoment(double seconds);

    MetroCirclerate *load;
    AeroLinebar *battery;
    MetroShelter *inverter;
    double elapsed = 0.0;
};

FirstConsole::FirstConsole()
{
    setWindowTitle("UPS 1");
    setPalette(QColor(29, 33, 37));
    setFixedSize(430, 130);

    load = new MetroCirclerate(this);
    load->setLabel("Load");
    load->setRadius(60);
    load->setTickness(18);
    load->move(20, 20);

    battery = new AeroLinebar(this);
    battery->setGeometry(160, 20, 250, 44);
    battery->setColor(QColor(0, 174, 240));
    battery->setColorText(Qt::white);
    battery->setValueFormat("%.0f %%");
    battery->setValuePosition(AeroLinebar::CenterVal);

    inverter = new MetroShelter(this);
    inverter->setGeometry(160, 74, 250, 40);
    inverter->setText("Inverter");

    auto *clock = new QTimer(this);
    QObject::connect(clock, &QTimer::timeout, this, [this] {
        elapsed += 0.1;
        showMoment(elapsed);
    });
    clock->start(100);
    showMoment(elapsed);
}

// A real console asks its UPS here.
void FirstConsole::showMoment(double seconds)
{
    load->setValue(60.0 + 50.0 * std::sin(seconds / 5.0));
    const bool onBattery = std::fmod(seconds, 60.0) > 30.0;
    const double discharged = onBattery ? std::fmod(seconds, 60.0) - 30.0 : 0.0;
    battery->setValue(100.0 - discharged);

    const bool overloaded = load->getValue() > 100.0;
    const quint8 alarm = overloaded ? 2 : 1;  // warning, no alarm
    const quint8 element = onBattery ? 6 : 5; // on battery, on
    inverter->setState({alarm, element});
}

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    FirstConsole console;
    console.show();
    if (argc == 3 && QString(argv[1]) == "--screenshot")
        return console.grab().save(argv[2]) ? 0 : 1;
    return QApplication::exec();
}
