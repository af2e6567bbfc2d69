// A plug-in for text_filters.cpp: capital letters. It needs no library, only functions of these names and types.

extern "C" int FilterVersion() {
    return 1;
}

extern "C" void FilterText(char* text) {
    for (; *text; ++text)
        if (*text >= 'a' && *text <= 'z') *text = static_cast<char>(*text - 'a' + 'A');
}
