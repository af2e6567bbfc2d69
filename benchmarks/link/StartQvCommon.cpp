#include "qvcommon/StringHelper.h"

int main(int argc, char**) {
    return CStringHelper::CountOf("a text", 'z') + argc - 1;
}
