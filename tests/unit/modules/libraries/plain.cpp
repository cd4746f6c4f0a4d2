// A small library for tests to load, as often as they have copies of it.
extern "C" int plain_answer();

int plain_answer()
{
    return 42;
}
