// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "metroStyle.h"

#include "testmain.h"
#include "widgetprobe.h"

#include <QtGui/QImage>

#include <thread>

namespace {

/// A bare owner that keeps its image as the widgets do.
class Owner : public QWidget, public MetroStyle
{
public:
    explicit Owner(QWidget *parent)
        : QWidget(parent)
        , MetroStyle(this)
    {}
    ~Owner() override
    {
        MetroStyle::repaintSchedule(&image);
    }
    using MetroStyle::dirty;
    using MetroStyle::state;
    QImage *image = nullptr;
};

ErrorLine stateLine(const QString &message)
{
    return {QStringLiteral("KivWidgets/metroStyle.cpp"), QStringLiteral("getColorIdx"), message};
}

} // namespace

class MetroStyleTest : public WidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void stateRecord();
    void colorTable();
    void initialState();
    void stateReadBack();
    void colorOfState_data();
    void colorOfState();
    void setStatePostsOnAChange();
    void setStateFromAnotherThread();
    void dropDeletesAndMarks();
};

void MetroStyleTest::stateRecord()
{
    QCOMPARE(int(sizeof(elemDesc_t)), 2);
    const elemDesc_t state{1, 5};
    QCOMPARE(int(state.alarmSt), 1);
    QCOMPARE(int(state.elemSt), 5);
    QVERIFY((elemDesc_t{1, 5} == state));
    QVERIFY(!(elemDesc_t{1, 5} != state));
    QVERIFY((elemDesc_t{5, 1} != state));
    QVERIFY((elemDesc_t{1, 4} != state));
    QVERIFY((elemDesc_t{2, 5} != state));
}

void MetroStyleTest::colorTable()
{
    const int expected[7][3] = {{89, 89, 91},    {0, 174, 240},  {247, 148, 50}, {0, 56, 117},
                                {167, 167, 167}, {247, 148, 50}, {238, 28, 37}};
    for (int i = 0; i < 7; ++i)
        QCOMPARE(MetroStyle::COLORTAB[i], QColor(expected[i][0], expected[i][1], expected[i][2]));
}

void MetroStyleTest::initialState()
{
    Owner owner(nullptr);
    QVERIFY((owner.state == elemDesc_t{1, 0}));
    QVERIFY(owner.dirty);
    QCOMPARE(owner.getColorIdx(), 4);
}

void MetroStyleTest::stateReadBack()
{
    Owner owner(nullptr);
    const MetroStyle &style = owner;
    QVERIFY((style.getElementState() == elemDesc_t{1, 0}));
    // At once, before the posted request arrives; a state without a meaning, too.
    owner.setState({4, 7});
    QVERIFY((style.getElementState() == elemDesc_t{4, 7}));
    owner.setState({255, 99});
    QVERIFY((style.getElementState() == elemDesc_t{255, 99}));
    // Reading alone posts nothing.
    QVERIFY(takesUpdateRequest(&owner));
    style.getElementState();
    QVERIFY(!takesUpdateRequest(&owner));
}

void MetroStyleTest::colorOfState_data()
{
    QTest::addColumn<int>("alarm");
    QTest::addColumn<int>("element");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("message");
    const int withoutAlarm[] = {4, 1, 1, 1, 1, 1, 2, 3};
    for (int element = 0; element < 8; ++element) {
        QTest::addRow("no alarm, element %d", element)
            << 1 << element << withoutAlarm[element] << QString();
    }
    for (const int element : {0, 5, 7, 8, 99, 255}) {
        QTest::addRow("communication lost, element %d", element) << 0 << element << 4 << QString();
        QTest::addRow("warning, element %d", element) << 2 << element << 5 << QString();
        QTest::addRow("anomaly, element %d", element) << 3 << element << 5 << QString();
        QTest::addRow("fault, element %d", element) << 4 << element << 6 << QString();
        QTest::addRow("locked, element %d", element) << 5 << element << 6 << QString();
    }
    QTest::newRow("unforeseen element state")
        << 1 << 8 << 0 << QStringLiteral("Caso elemSt non previsto:0x08");
    QTest::newRow("highest element state")
        << 1 << 255 << 0 << QStringLiteral("Caso elemSt non previsto:0xFF");
    QTest::newRow("unforeseen alarm state")
        << 9 << 0 << 0 << QStringLiteral("Caso alarmSt non previsto:0x09");
    QTest::newRow("unforeseen alarm state of a stand-by element")
        << 6 << 1 << 0 << QStringLiteral("Caso alarmSt non previsto:0x106");
    QTest::newRow("highest alarm state")
        << 255 << 255 << 0 << QStringLiteral("Caso alarmSt non previsto:0xFFFF");
}

void MetroStyleTest::colorOfState()
{
    QFETCH(int, alarm);
    QFETCH(int, element);
    QFETCH(int, index);
    QFETCH(QString, message);
    Owner owner(nullptr);
    owner.setState({quint8(alarm), quint8(element)});
    QCOMPARE(owner.getColorIdx(), index);
    const QList<ErrorLine> expected =
        message.isNull() ? QList<ErrorLine>() : QList<ErrorLine>({stateLine(message)});
    QCOMPARE(takeErrorLines(), expected);
    QVERIFY((owner.state == elemDesc_t{quint8(alarm), quint8(element)}));
}

void MetroStyleTest::setStatePostsOnAChange()
{
    Stage<Owner> owner;
    owner->setState({1, 0});
    QVERIFY(!takesUpdateRequest(owner.widget));
    owner->setState({1, 5});
    QVERIFY(takesUpdateRequest(owner.widget));
    owner->setState({1, 5});
    QVERIFY(!takesUpdateRequest(owner.widget));
    owner->setState({2, 5});
    QVERIFY(takesUpdateRequest(owner.widget));
}

void MetroStyleTest::setStateFromAnotherThread()
{
    Stage<Owner> owner;
    std::thread other([&] { owner->setState({4, 6}); });
    other.join();
    QVERIFY(takesUpdateRequest(owner.widget));
    QCOMPARE(owner->getColorIdx(), 6);
}

void MetroStyleTest::dropDeletesAndMarks()
{
    Owner owner(nullptr);
    owner.image = new QImage(2, 2, QImage::Format_ARGB32_Premultiplied);
    owner.dirty = false;
    owner.MetroStyle::repaintSchedule(&owner.image);
    QVERIFY(!owner.image);
    QVERIFY(owner.dirty);
    owner.dirty = false;
    owner.MetroStyle::repaintSchedule(&owner.image);
    QVERIFY(!owner.image);
    QVERIFY(owner.dirty);
}

KIV_TEST_MAIN(MetroStyleTest)

#include "tst_metrostyle.moc"
