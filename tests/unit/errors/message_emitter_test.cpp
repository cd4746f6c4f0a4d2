#include "tests/support/child.h"
#include "tests/support/fake_language.h"
#include "tests/unit/errors/facility_calls.h"
#include "tests/unit/errors/message_texts.h"

#include <gtest/gtest.h>

#include <cstring>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <streambuf>

using namespace zorvel::test;
using zorvel::errors::emitMessage;
using zorvel::errors::MessageEmitter;
using zorvel::errors::registerMessages;
using zorvel::errors::removeMessages;

namespace {

int routineCalls = 0;

int countingRoutine()
{
    ++routineCalls;
    return registerMessages();
}

/// The user reads English; nothing is registered.
class Emitter : public testing::Test
{
protected:
    Emitter() : m_english("en")
    {
        removeMessages();
        facility_calls::reset();
        routineCalls = 0;
        m_emitter.registerTables = &countingRoutine;
    }
    ~Emitter() override { removeMessages(); }

    int emitAbandoned() { return emitMessage(m_emitter, m_stream, ZORVEL_SEM_WAIT_ABANDONED, "s"); }

    const fake_language::Scope m_english;
    MessageEmitter m_emitter = MessageEmitter();
    std::ostringstream m_stream;
};

const std::string abandoned = "Wait on semaphore 's' abandonded because the owning process has terminated.";

/// A stream's buffer that counts how often it is flushed, and with what in it.
class Sink : public std::streambuf
{
public:
    std::string text;
    std::vector<std::string> flushed;

protected:
    int_type overflow(int_type byte) override
    {
        text += traits_type::to_char_type(byte);
        return traits_type::not_eof(byte);
    }
    int sync() override
    {
        flushed.push_back(text);
        return 0;
    }
};

}  // namespace

TEST_F(Emitter, WritesTheTextAndOneLineFeed)
{
    EXPECT_EQ(static_cast<int>(abandoned.size()) + 2, emitAbandoned());
    EXPECT_EQ(abandoned + '\n', m_stream.str());
}

TEST_F(Emitter, IsNotPaddedToAWidthOfTheStream)
{
    std::ostringstream stream;
    stream << std::setw(200) << std::left << std::setfill('.');
    emitMessage(m_emitter, stream, ZORVEL_SEM_WAIT_ABANDONED, "s");
    EXPECT_EQ(abandoned + '\n', stream.str());
}

TEST_F(Emitter, FlushesOnceAfterTheWholeLine)
{
    Sink sink;
    std::ostream stream(&sink);
    EXPECT_EQ(static_cast<int>(abandoned.size()) + 2, emitMessage(m_emitter, stream, ZORVEL_SEM_WAIT_ABANDONED, "s"));
    EXPECT_EQ(std::vector<std::string>({abandoned + '\n'}), sink.flushed);
    EXPECT_EQ(abandoned + '\n', sink.text);
}

TEST_F(Emitter, BufferHoldsWhatWasWritten)
{
    emitAbandoned();
    EXPECT_EQ(abandoned + '\n', m_emitter.text);
    EXPECT_EQ(2048u, sizeof m_emitter.text);
}

TEST_F(Emitter, KeepsTheLineFeedsInsideATextAndItsArguments)
{
    emitMessage(m_emitter, m_stream, ZORVEL_SEM_OPEN_FAILED, "a\nb", "why\n");
    EXPECT_EQ("Failed to open semaphore 'a\nb'. \n System error: why\n\n", m_stream.str());
}

TEST_F(Emitter, AppendsToTheStream)
{
    m_stream << "before ";
    emitAbandoned();
    emitAbandoned();
    EXPECT_EQ("before " + abandoned + '\n' + abandoned + '\n', m_stream.str());
}

TEST_F(Emitter, AsksForTheMessageInItsOwnBuffer)
{
    emitAbandoned();
    ASSERT_EQ(1u, facility_calls::record().formats.size());
    const facility_calls::Format& format = facility_calls::record().formats[0];
    EXPECT_EQ(qxGetMessageContext(), format.context);
    EXPECT_EQ(m_emitter.text, format.buffer);
    EXPECT_EQ(2048u, format.size);
    EXPECT_EQ(ZORVEL_SEM_WAIT_ABANDONED, format.identifier);
}

TEST_F(Emitter, FirstMessageRegistersOnce)
{
    EXPECT_EQ(0, m_emitter.isRegistered);
    emitAbandoned();
    EXPECT_EQ(1, m_emitter.isRegistered);
    emitAbandoned();
    EXPECT_EQ(1, routineCalls);
    EXPECT_EQ(std::vector<std::string>({"add primary", "add ja"}), facility_calls::record().registrations);
}

TEST_F(Emitter, AMessageThatFailsRegistersToo)
{
    EXPECT_GE(1, emitMessage(m_emitter, m_stream, 0x4e0010));
    EXPECT_EQ(1, routineCalls);
    EXPECT_EQ(1, m_emitter.isRegistered);
    emitAbandoned();
    EXPECT_EQ(1, routineCalls);
}

TEST_F(Emitter, WithItsFlagSetRegistersNothing)
{
    m_emitter.isRegistered = 1;
    EXPECT_GE(1, emitAbandoned());
    EXPECT_EQ(0, routineCalls);
    EXPECT_EQ("", m_stream.str());
}

TEST_F(Emitter, WithoutARoutineRegistersNothing)
{
    m_emitter.registerTables = nullptr;
    EXPECT_GE(1, emitAbandoned());
    EXPECT_EQ(0, m_emitter.isRegistered);
    EXPECT_EQ("", m_stream.str());
    registerMessages();
    EXPECT_EQ(static_cast<int>(abandoned.size()) + 2, emitAbandoned());
    EXPECT_EQ(0, m_emitter.isRegistered);
}

TEST_F(Emitter, EveryRecordRegistersForItself)
{
    MessageEmitter other = MessageEmitter();
    other.registerTables = &countingRoutine;
    emitAbandoned();
    EXPECT_EQ(static_cast<int>(abandoned.size()) + 2, emitMessage(other, m_stream, ZORVEL_SEM_WAIT_ABANDONED, "s"));
    EXPECT_EQ(2, routineCalls);
    EXPECT_EQ(abandoned + '\n' + abandoned + '\n', m_stream.str());
}

TEST_F(Emitter, MessagesTakenBackAreUnknownUntilRegisteredAgain)
{
    emitAbandoned();
    m_stream.str(std::string());
    removeMessages();
    EXPECT_GE(1, emitAbandoned());
    EXPECT_EQ("", m_stream.str());
    registerMessages();
    EXPECT_EQ(static_cast<int>(abandoned.size()) + 2, emitAbandoned());
    EXPECT_EQ(abandoned + '\n', m_stream.str());
}

TEST_F(Emitter, OneRemovalTakesBackWhatWasRegisteredTwice)
{
    emitAbandoned();
    registerMessages();
    registerMessages();
    m_stream.str(std::string());
    removeMessages();
    EXPECT_GE(1, emitAbandoned());
    EXPECT_EQ("", m_stream.str());
}

TEST_F(Emitter, AFailureLeavesTheStreamAlone)
{
    for (const int result : {0, -1, -2, -1000}) {
        const facility_calls::FormatAnswer failure(result, "not to be seen");
        Sink sink;
        std::ostream stream(&sink);
        EXPECT_EQ(result + 1, emitMessage(m_emitter, stream, ZORVEL_SEM_WAIT_ABANDONED, "s"));
        EXPECT_EQ("", sink.text);
        EXPECT_TRUE(sink.flushed.empty());
        EXPECT_TRUE(stream.good());
    }
}

TEST_F(Emitter, ResultOfAFailureIsTheFacilitysAndOne)
{
    for (const std::uint32_t identifier : {0u, 1u, 0x4e0000u, 0x4e0010u, 0x4d0001u, 0x4f0001u, 0xFFFFFFFFu}) {
        facility_calls::reset();
        const int result = emitMessage(m_emitter, m_stream, identifier, "a", "b", 3);
        ASSERT_EQ(1u, facility_calls::record().formats.size());
        EXPECT_GE(0, facility_calls::record().formats[0].result) << identifier;
        EXPECT_EQ(facility_calls::record().formats[0].result + 1, result) << identifier;
    }
    EXPECT_EQ("", m_stream.str());
}

TEST_F(Emitter, ATextOfOneByteIsASuccess)
{
    const facility_calls::FormatAnswer shortest(1, "x");
    EXPECT_EQ(3, emitAbandoned());
    EXPECT_EQ("x\n", m_stream.str());
}

TEST_F(Emitter, AStreamThatTakesNothingChangesNoResult)
{
    std::ostream stream(nullptr);
    EXPECT_EQ(static_cast<int>(abandoned.size()) + 2, emitMessage(m_emitter, stream, ZORVEL_SEM_WAIT_ABANDONED, "s"));
    EXPECT_TRUE(stream.bad());
}

namespace {

bool isZero(const char* text, std::size_t size)
{
    return std::string(text, size) == std::string(size, '\0');
}

/// In a process in which nobody has emitted anything yet.
int firstMessage(const std::vector<std::string>&)
{
    const fake_language::Scope english("en");
    MessageEmitter& emitter = zorvel::errors::messageEmitter;
    const bool isFresh = emitter.isRegistered == 0 && isZero(emitter.text, sizeof emitter.text);
    std::cout << (isFresh ? "fresh" : "used") << '\n'
              << (emitter.registerTables == &registerMessages ? "own routine" : "other routine") << '\n'
              << facility_calls::record().registrations.size() << '\n';
    emitMessage(emitter, std::cerr, ZORVEL_SEM_WAIT_TIMED_OUT, "s", 7);
    emitMessage(emitter, std::cerr, ZORVEL_SEM_WAIT_TIMED_OUT, "t", 8);
    for (const std::string& call : facility_calls::record().registrations)
        std::cout << call << '\n';
    return 0;
}

const ChildMode firstMessageMode("first-message", &firstMessage);

}  // namespace

TEST(LibrarysEmitter, RegistersWithItsFirstMessageAndNeverAgain)
{
    const ChildResult child = runChild("first-message");
    EXPECT_EQ(0, child.status);
    EXPECT_EQ("fresh\nown routine\n0\nadd primary\nadd ja\n", child.output);
    EXPECT_EQ("Wait on semaphore 's' timed out after 7 seconds.\nWait on semaphore 't' timed out after 8 seconds.\n",
              child.errors);
}
