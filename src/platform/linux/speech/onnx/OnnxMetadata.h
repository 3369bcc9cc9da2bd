#pragma once

#include "platform/linux/speech/onnx/OnnxProblem.h"

#include <QByteArray>
#include <QHash>
#include <QIODevice>
#include <QStringList>

namespace tavrin {

/// What an ONNX file tells of its model beside the model itself.
struct OnnxMetadata {
    QString producer;
    /// Of keys that stand there twice the last holds, as it does for the library.
    QHash<QByteArray, QByteArray> properties;
    QStringList inputs; ///< The names of the graph's inputs, in order.
    qsizetype outputs = 0; ///< How many outputs the graph has.
};

/// Reads the metadata of the ONNX file at @p path. Weights are passed over, not read: a file of
/// gigabytes takes some milliseconds and a few kilobytes of memory, and weights in files of their
/// own do not matter. Anything but a regular file is refused, without waiting for it. Keys longer
/// than 256 bytes and values longer than 64 KiB, which no speech model has, are left out.
[[nodiscard]] OnnxResult<OnnxMetadata> readOnnxMetadata(const QString& path);

/// The same of an open device that can be sought in; @p name stands in the problem.
[[nodiscard]] OnnxResult<OnnxMetadata> readOnnxMetadata(QIODevice& device, const QString& name);

} // namespace tavrin
