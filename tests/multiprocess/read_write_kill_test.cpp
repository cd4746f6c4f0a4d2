#include "tests/multiprocess/kill_round.h"

#include <boost/thread/thread.hpp>
#include <gtest/gtest.h>

#include <exception>
#include <vector>

using namespace zorvel::test;

namespace {

void playRound(Moment moment, unsigned seed, const boost::shared_ptr<zvAbstractFS>& fs)
{
    Round round(moment, seed, fs);
    round.kill();
    round.helpSurvivors();
    round.expectSurvivorsDidAll();
    round.expectTracesGo();
    round.report();
    EXPECT_TRUE(moment != Moment::queued || !round.traces().empty()) << "seed " << seed;
    EXPECT_TRUE(!isInside(moment) || round.diedInside()) << "seed " << seed;
    EXPECT_TRUE(moment != Moment::halfWay || round.leftUnfinished()) << "seed " << seed;
}

void tryRound(Moment moment, unsigned seed, const boost::shared_ptr<zvAbstractFS>& fs)
{
    try {
        playRound(moment, seed, fs);
    } catch (const std::exception& error) {
        ADD_FAILURE() << error.what() << ", seed " << seed;
    }
}

/// Rounds wait most of the time, so several run side by side.
void playRounds(const std::vector<Moment>& moments, unsigned firstSeed)
{
    const boost::shared_ptr<zvAbstractFS> fs = zvGetDefaultFSImp();
    boost::thread_group threads;
    for (std::size_t i = 0; i < moments.size(); ++i)
        threads.create_thread([=] { tryRound(moments[i], firstSeed + static_cast<unsigned>(i), fs); });
    threads.join_all();
}

void playFour(Moment moment, unsigned firstSeed)
{
    playRounds(std::vector<Moment>(4, moment), firstSeed);
}

}  // namespace

TEST(ReadWriteKill, AReaderInside)
{
    playFour(Moment::reading, 100);
}

TEST(ReadWriteKill, AWriterInside)
{
    playFour(Moment::writing, 200);
}

/// The next writer replaces the torn release.
TEST(ReadWriteKill, AWriterWithHalfOfItsReleaseWritten)
{
    playFour(Moment::halfWay, 300);
}

TEST(ReadWriteKill, WhoeverWaits)
{
    const Moment queued = Moment::queued;
    const Moment waiting = Moment::waiting;
    playRounds({queued, queued, waiting, waiting, waiting, waiting}, 400);
}

TEST(ReadWriteKill, AWriterThatBecomesAReader)
{
    playFour(Moment::downgrading, 500);
}

TEST(ReadWriteKill, AtAnyMoment)
{
    playFour(Moment::any, 600);
}
