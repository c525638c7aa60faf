#pragma once
// The site report as one JSON document, shared by the tool, the C API and
// Python. Its shape is docs/site-report.schema.json (schema_version 1):
// snake_case keys, a unit beside every value, the standard and clause of
// every computed value, null where there is no value (never 0).

#include <string>

#include "automation/SiteReport.h"

namespace qvrl {

inline constexpr int kSiteReportSchemaVersion = 1;

// indent < 0: one line; else pretty-printed with that many spaces.
std::string SiteReportJson(const SiteResult& r, int indent = -1);

// The input of a host as one JSON object whose keys are the options of
// `qvroofload site` in snake_case ("norm", "snow_zone", "height", "roof",
// "dist_shore", ...); null is an option not given. An unknown key, a value of
// the wrong type, or text that is no JSON object is a SiteInputError naming
// the key.
SiteInput SiteInputFromJson(const std::string& text);

// SiteInputFromJson, ComputeSite, SiteReportJson: the C API and Python.
std::string SiteJsonFor(const std::string& inputJson);

}  // namespace qvrl
