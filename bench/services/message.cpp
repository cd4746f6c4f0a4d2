#include <zorvel/ipc.h>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <cstdio>
#include <iostream>
#include <streambuf>
#include <string>

/// A message with two arguments, formatted, written with a line feed to std::cerr and flushed. The stream ends in a
/// buffer that only counts.
namespace {

/// Takes the place of the buffer of std::cerr while it lives.
class Counting : public std::streambuf
{
public:
    Counting() : m_before(std::cerr.rdbuf(this)), m_bytes(0) {}
    ~Counting() override { std::cerr.rdbuf(m_before); }

    std::streamsize bytes() const { return m_bytes; }

protected:
    std::streamsize xsputn(const char*, std::streamsize count) override
    {
        m_bytes += count;
        return count;
    }

    int_type overflow(int_type character) override
    {
        ++m_bytes;
        return traits_type::not_eof(character);
    }

private:
    std::streambuf* const m_before;
    std::streamsize m_bytes;
};

const std::string name = "zorvel-benchmark-of-messages";
const std::streamsize expected = 158;

/// Runs the loop and looks whether every message came whole.
template <class Emit>
void measure(benchmark::State& state, Emit emit)
{
    Counting counting;
    for (auto _ : state)
        emit();
    if (counting.bytes() != expected * static_cast<std::streamsize>(state.iterations()))
        state.SkipWithError("another text than the others");
}

/// The message that says that a semaphore's value cannot be had.
void ours(benchmark::State& state)
{
    zvSemaphoreIPC semaphore(name, 0, false);
    long value = 0;
    measure(state, [&] { semaphore.GetValue(&value); });
}

void withFmt(benchmark::State& state)
{
    char buffer[2048];
    measure(state, [&] {
        const auto end = fmt::format_to_n(buffer, sizeof buffer,
                                          "sem_getvalue() is not implemented on this system. Could not get the value "
                                          "of semaphore '{}'. \n System error: {}\n",
                                          name, "unimplemented function");
        std::cerr.write(buffer, end.out - buffer).flush();
    });
}

void withSnprintf(benchmark::State& state)
{
    char buffer[2048];
    measure(state, [&] {
        const int length = std::snprintf(buffer, sizeof buffer,
                                         "sem_getvalue() is not implemented on this system. Could not get the value of "
                                         "semaphore '%s'. \n System error: %s\n",
                                         name.c_str(), "unimplemented function");
        std::cerr.write(buffer, length).flush();
    });
}

}  // namespace

BENCHMARK(ours)->Name("message/zorvel");
BENCHMARK(withFmt)->Name("message/fmt");
BENCHMARK(withSnprintf)->Name("message/snprintf");
