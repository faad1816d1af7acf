// Games, played by a hand and seen by an eye.

#include "support/room.h"

namespace {

const struct
{
    const char *script, *seen;
} games[] = {
    // ---- calls
    {"", "0"},
    {"12", "1 B12/     red 12"},
    {"12 7 44 61 33 75", "6 O75/N33 O61 N44 B7   red 7 12 33 44 61 75"},
    {"12 7 7:Y", "2 B7/B12     red 12; Clear Board: Clearing button, Are you sure?"},
    {"12 7 7:Y 7", "3 B7/B7  B12   red 7 12; Clear Board: Clearing button, Are you sure?"},
    {"12 12:N", "1 B12/     red 12; Clear Board: Clearing button, Are you sure?"},
    {"12 12:/", "1 B12/     red 12; Clear Board: Clearing button, Are you sure?"},
    {"12 12", "1 B12/     red 12; Clear Board: Clearing button, Are you sure?"},
    // ---- entry
    {"'n33/ 'G7/ 'O75/ 'i100/ 'B.9/", "5 B1/I10 O75 G7  N33  red 1 7 10 33 75"},
};

} // namespace

class TestGame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void games()
    {
        int failed = 0;
        for (const auto &[script, seen] : ::games) {
            Room room;
            room.play(script);
            const QString really = room.look();
            if (really != seen)
                qWarning("%d: %s\n  %s\n  %s", ++failed, script, seen, qPrintable(really));
        }
        QCOMPARE(failed, 0);
    }
};

int main(int argc, char *argv[])
{
    return runInRoom<TestGame>(argc, argv);
}

#include "tst_game.moc"
