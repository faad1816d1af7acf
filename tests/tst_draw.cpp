// The draw is fair: bounds that find one ball favoured by a tenth, and that chance alone passes all but
// once in more than 10,000 runs.

#include "board/draw.h"

#include <QTest>

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <vector>

namespace {

constexpr int balls = 75;
using Counts = std::array<int, balls>;

double chiSquare(const Counts &counts, double expected)
{
    return std::accumulate(counts.begin(), counts.end(), 0.0, [=](double sum, int count) {
        return sum + (count - expected) * (count - expected) / expected;
    });
}

std::vector<int> allBalls()
{
    std::vector<int> pool(balls);
    std::iota(pool.begin(), pool.end(), 1);
    return pool;
}

} // namespace

class TestDraw : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void positions();
    void emptyPool();
    void firstBalls();
    void wholeGames();
};

void TestDraw::positions()
{
    QCOMPARE(board::pickPosition(1, 0.0), 1);
    QCOMPARE(board::pickPosition(1, 1.0 - 0x1p-24), 1);
    QCOMPARE(board::pickPosition(75, 0.0), 1);
    QCOMPARE(board::pickPosition(75, 1.0 - 0x1p-24), 75);
    QCOMPARE(board::pickPosition(4, 0.25), 2);
    QCOMPARE(board::pickPosition(4, 0.2499), 1);
}

void TestDraw::emptyPool()
{
    QVERIFY(!board::drawFrom({}));
}

void TestDraw::firstBalls()
{
    constexpr int draws = 1'000'000;
    const std::vector<int> pool = allBalls();
    Counts counts{};
    for (int i = 0; i < draws; ++i)
        ++counts[static_cast<std::size_t>(*board::drawFrom(pool) - 1)];
    // 74 degrees of freedom: above 140 by chance 5 times in 1,000,000; one ball at 1.1 gives about 205.
    const double statistic = chiSquare(counts, double(draws) / balls);
    QVERIFY2(statistic < 140.0, qPrintable(QString::number(statistic)));
    QVERIFY2(statistic > 30.0, "the counts are more even than chance makes them");
}

void TestDraw::wholeGames()
{
    constexpr int games = 20'000;
    std::vector<Counts> placesOf(balls, Counts{}); // [ball][place]
    for (int game = 0; game < games; ++game) {
        std::vector<int> pool = allBalls();
        for (std::size_t place = 0; place < balls; ++place) {
            const int ball = *board::drawFrom(pool);
            ++placesOf[static_cast<std::size_t>(ball - 1)][place];
            pool.erase(std::find(pool.begin(), pool.end(), ball));
        }
    }
    constexpr double expected = double(games) / balls;
    const double cellDeviation = std::sqrt(expected * (1.0 - 1.0 / balls));
    const double meanDeviation = std::sqrt((balls * balls - 1) / 12.0 / games);
    for (std::size_t ball = 0; ball < balls; ++ball) {
        double sumOfPlaces = 0.0;
        for (std::size_t place = 0; place < balls; ++place) {
            const int count = placesOf[ball][place];
            sumOfPlaces += double(place + 1) * count;
            QVERIFY2(std::abs(count - expected) < 6.0 * cellDeviation,
                     qPrintable(
                         QStringLiteral("ball %1 at place %2: %3").arg(ball + 1).arg(place + 1).arg(count)));
        }
        // One ball at 1.1 moves its mean place by eleven of these deviations.
        QVERIFY2(std::abs(sumOfPlaces / games - (balls + 1) / 2.0) < 5.2 * meanDeviation,
                 qPrintable(QStringLiteral("ball %1: mean place %2").arg(ball + 1).arg(sumOfPlaces / games)));
    }
}

QTEST_APPLESS_MAIN(TestDraw)
#include "tst_draw.moc"
