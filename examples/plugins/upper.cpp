// A plug-in for text_filters.cpp: capital letters. It needs no library, only the names and types of these functions.

extern "C" int FilterVersion() {
    return 1;
}

extern "C" void FilterText(char* text) {
    for (; *text; ++text)
        if (*text >= 'a' && *text <= 'z') *text = static_cast<char>(*text - 'a' + 'A');
}
