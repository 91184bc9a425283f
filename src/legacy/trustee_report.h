// Conversion of a legacy TRUSTEE.KXM report (standard input) into a Metadata document.
#pragma once

// Writes the document to outputPath. tree and prefix may be null. Returns 0, or -1 on a
// failure that stops the conversion.
int convertTrusteeReport(const char *tree, const char *outputPath, const char *prefix);
