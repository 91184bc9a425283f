# Sourced by the build scripts: makes sure the tools they need are on this machine.
# Each tool is named with the Debian package that provides it; missing ones are installed when
# we are root with apt-get, otherwise the script stops and names the package to install.

trovan_require() {
  local missing=() tool package
  for pair in "$@"; do
    tool=${pair%%:*}
    package=${pair#*:}
    case $tool in
      /*) [ -e "$tool" ] || missing+=("$package") ;;
      *) command -v "$tool" >/dev/null 2>&1 || missing+=("$package") ;;
    esac
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  if [ "$(id -u)" -eq 0 ] && command -v apt-get >/dev/null 2>&1; then
    echo "Installing missing packages: ${missing[*]}"
    apt-get update -qq && DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "${missing[@]}" >/dev/null \
      && return 0
  fi
  echo "Missing packages: ${missing[*]}. Install them with: apt-get install ${missing[*]}" >&2
  exit 1
}

# What every build needs.
trovan_require_build_tools() {
  trovan_require cmake:cmake ninja:ninja-build g++:g++ python3:python3 bash:bash \
    /usr/include/gtest/gtest.h:libgtest-dev
  # trovanctl's libraries: an XML parser, a command-line parser and a JSON library.
  trovan_require /usr/include/libxml2/libxml/parser.h:libxml2-dev /usr/include/CLI/CLI.hpp:libcli11-dev \
    /usr/include/nlohmann/json.hpp:nlohmann-json3-dev
  # The trovanctl transcripts format a document with xmllint as administrators do.
  trovan_require xmllint:libxml2-utils
  # The page of trovanctl report --html is tested in a real browser.
  trovan_require chromium:chromium
}
