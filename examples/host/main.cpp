// The demo host: a small program that loads the library and shows it working.
#include <Common>

#include <cstdio>

int main()
{
    std::printf("common demo host\n");
    return 0;
}
