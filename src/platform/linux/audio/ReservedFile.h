#pragma once

#include <QString>

#include <cstdint>

namespace tavrin {

/// A file being written, with disk space set aside ahead of the writing: what must still follow
/// when the disk is full has its place already. Readable by its owner only. Any one thread.
class ReservedFile {
public:
    /// Creates the file, or empties it when it is there.
    explicit ReservedFile(const QString& path);

    /// Cuts off what was set aside and not used.
    ~ReservedFile();

    ReservedFile(const ReservedFile&) = delete;
    ReservedFile& operator=(const ReservedFile&) = delete;

    [[nodiscard]] bool isOpen() const { return m_descriptor >= 0; }

    /// Makes sure that the file can grow to @p size bytes. False when the disk is full.
    [[nodiscard]] bool reserve(std::int64_t size);

    /// Writes at the present position. False when the disk refuses.
    [[nodiscard]] bool write(const std::uint8_t* bytes, int count);

    void seek(std::int64_t position) { m_position = position; }

    [[nodiscard]] std::int64_t position() const { return m_position; }

    /// Bytes written, from the first to the furthest.
    [[nodiscard]] std::int64_t size() const { return m_size; }

private:
    int m_descriptor = -1;
    std::int64_t m_position = 0;
    std::int64_t m_size = 0;
    std::int64_t m_reserved = 0;
};

} // namespace tavrin
