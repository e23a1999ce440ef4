// A module of the application, built against the installed library only.
#include <Common>

#include <cstdio>

int main()
{
    if (!IsMainThread())
        return 1;
    TString<char16_t> wide(u"Take 1");
    TString<char> narrow("Take 1");
    if (wide.GetLength() != 6 || narrow.qString() != wide.qString())
        return 2;
    if (ComputeCrc32("123456789", 9) != 0xCBF43926u)
        return 3;
    try {
        ThrowIfNoMemory(nullptr);
        return 4;
    } catch (TException const& failure) {
        if (!failure.Message() || failure.Message()->qString() != QStringLiteral("Out of memory"))
            return 5;
    }
    std::printf("consumer ok\n");
    return 0;
}
