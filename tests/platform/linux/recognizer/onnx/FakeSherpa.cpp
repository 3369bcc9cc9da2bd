// A library with sherpa-onnx's name that can do nothing but tell a version.
// NOLINTNEXTLINE(readability-identifier-naming): the library's own name
extern "C" __attribute__((visibility("default"))) const char* SherpaOnnxGetVersionStr();

const char* SherpaOnnxGetVersionStr()
{
    return TAVRIN_FAKE_VERSION;
}
