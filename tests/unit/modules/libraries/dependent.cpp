// A library that needs another.
extern "C" int provider_answer();
extern "C" int dependent_answer();

int dependent_answer()
{
    return 7 * provider_answer();
}
