#pragma once

#include <QString>

namespace tavrin {

/// Why an operation failed. Values are compared by the tests and shown to people as they are.
struct Error {
    QString domain; ///< Names the part of the program (or of the system) that the code belongs to.
    int code = 0;
    QString message; ///< Ready to show to the user; may be empty when a server sent nothing.

    friend bool operator==(const Error&, const Error&) = default;
};

} // namespace tavrin
