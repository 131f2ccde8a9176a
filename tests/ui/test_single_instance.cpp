// A second start finds the first through its local socket and asks it to come forward.
#include "app/ui/single_instance.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

class SingleInstanceTest : public QObject {
    Q_OBJECT
private slots:
    void secondStartReachesTheFirst() {
        QTemporaryDir root;
        SingleInstance first(root.path());
        QVERIFY(!first.anotherIsRunning());
        QVERIFY(first.listen());
        QSignalSpy activated(&first, &SingleInstance::activationRequested);

        SingleInstance second(root.path());
        QVERIFY(second.anotherIsRunning());
        QTRY_COMPARE(activated.count(), 1);

        // Another data root is another program.
        QTemporaryDir elsewhere;
        SingleInstance other(elsewhere.path());
        QVERIFY(!other.anotherIsRunning());
    }
};

QTEST_MAIN(SingleInstanceTest)
#include "test_single_instance.moc"
