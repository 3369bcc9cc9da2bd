#pragma once

#include <QByteArray>

namespace tavrin {

/// Keeps ONNX Runtime's threads from spinning while they wait for work, which doubles what two of
/// them cost the processor. The library takes such options from a file only. This one lies in
/// memory, so that nothing is written to a disk and nothing has to be installed.
class SessionOptions {
public:
    SessionOptions();
    ~SessionOptions();

    SessionOptions(const SessionOptions&) = delete;
    SessionOptions& operator=(const SessionOptions&) = delete;

    /// The library's provider "cpu" with the file's name; without it where there is no such file.
    /// The file is read when a recogniser is created, and must be there until then.
    [[nodiscard]] QByteArray provider() const;

private:
    int m_file;
};

} // namespace tavrin
