#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin::devcloud::testing {

struct DocumentedField {
    std::string name;
    std::string type; ///< "string", "integer" or "object".
    bool isOptional = false;
};

struct DocumentedError {
    int status = 0;
    std::string when;
};

/// One "### METHOD /path" section of docs/cloud-api.md.
struct DocumentedEndpoint {
    std::string method;
    std::string path;
    bool needsToken = false;
    bool answersSession = false;
    std::vector<DocumentedField> request;
    std::vector<DocumentedField> answer;
    std::vector<DocumentedError> errors;
};

/// Reads the endpoints out of the page's headings and tables.
std::vector<DocumentedEndpoint> readApiDocument(std::string_view markdown);

/// The fields of the session object, from its own table. A dot leads into an object.
std::vector<DocumentedField> readSessionFields(std::string_view markdown);

/// The statuses of the table of errors that every endpoint shares.
std::set<int> readSharedErrors(std::string_view markdown);

} // namespace tavrin::devcloud::testing
