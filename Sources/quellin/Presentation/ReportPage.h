#pragma once

#include <expected>
#include <functional>
#include <string>
#include <string_view>

namespace quellin::cli {

/// The page for reports that was built into this program, a template with places for a title and for data; or
/// why there is none, as the end of a sentence.
[[nodiscard]] std::expected<std::string_view, std::string_view> builtReportPage();

/// `text` as text of an HTML document: what has a meaning there is escaped, control characters are left out.
[[nodiscard]] std::string escapedForHTML(std::string_view text);

/// `json` as it may stand in a script element of an HTML document; it means the same.
[[nodiscard]] std::string escapedForScript(std::string_view json);

/// Writes `page` with `title`, which is any text, and `data`, which is JSON, in their places. Throws
/// `std::logic_error` when the page has no such places.
void writeReportPage(std::string_view page, std::string_view title, std::string_view data,
                     const std::function<void(std::string_view)>& write);

}  // namespace quellin::cli
