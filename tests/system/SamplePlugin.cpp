// What a plug-in is: functions with C linkage, and the version of the interface that they are for.

#if defined(__GNUC__)
#define PLUGIN_API __attribute__((visibility("default")))
#endif

extern "C" {

PLUGIN_API int PluginVersion();
PLUGIN_API int Add(int a, int b);

int PluginVersion() {
    return 2;
}

int Add(int a, int b) {
    return a + b;
}
}
