#include <glib.h>

int main(int argc, char**) {
    return static_cast<int>(g_utf8_strlen("", -1)) + argc - 1;
}
