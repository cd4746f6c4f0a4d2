// What another library needs.
extern "C" int provider_answer();

int provider_answer()
{
    return 6;
}
