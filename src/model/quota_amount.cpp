#include "model/quota_amount.h"

bool isQuotaAmount(std::string_view text) {
  constexpr std::string_view kLargest = "9223372036854775807";
  if (text.empty() || text.size() > kLargest.size()) return false;
  for (const char c : text)
    if (c < '0' || c > '9') return false;
  return text.size() < kLargest.size() || text <= kLargest;
}
