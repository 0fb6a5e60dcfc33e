// The kernel's termios2 and the C library's termios cannot share a file.
#include <asm/termbits.h>
#include <sys/ioctl.h>

#include <cstdint>

namespace tolvane::platform {

bool SetCustomBaudRate(int fd, std::uint32_t baudRate) {
    struct termios2 settings;
    if (ioctl(fd, TCGETS2, &settings) != 0) return false;
    settings.c_cflag &= ~(CBAUD | (CBAUD << IBSHIFT));
    settings.c_cflag |= BOTHER | (BOTHER << IBSHIFT);
    settings.c_ispeed = baudRate;
    settings.c_ospeed = baudRate;
    return ioctl(fd, TCSETS2, &settings) == 0;
}

}  // namespace tolvane::platform
