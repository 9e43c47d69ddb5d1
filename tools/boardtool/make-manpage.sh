#!/usr/bin/env bash
# Writes boardtool's manual page from its own help texts: the overview of
# `boardtool --help` and, for each command, `boardtool COMMAND --help`.
#   make-manpage.sh BOARDTOOL OUTPUT
set -euo pipefail
tool=$1 out=$2

# Help text as preformatted roff: backslashes escaped, and lines that begin
# with a dot or an apostrophe kept from being read as requests.
roff() { sed -e 's/\\/\\e/g' -e "s/^\\([.']\\)/\\\\\\&\\1/"; }

version=$("$tool" --version | awk '{print $2}')
help=$("$tool" --help)
commands=$(printf '%s\n' "$help" | sed -n '/^Commands:/,/^$/s/^  \([a-z]\+\) .*/\1/p')
{
  echo ".TH BOARDTOOL 1 \"\" \"boardlib $version\" \"User Commands\""
  echo ".SH NAME"
  echo "boardtool \\- read, check and show FPGA board definitions"
  echo ".SH SYNOPSIS"
  echo ".B boardtool"
  echo ".I COMMAND"
  echo "[\\fIOPTIONS\\fR] [\\fIARGS\\fR]"
  echo ".br"
  echo ".B boardtool --version"
  echo ".SH DESCRIPTION"
  echo ".nf"
  printf '%s\n' "$help" | sed -n '/^usage/,$p' | sed '1,2d' | roff
  echo ".fi"
  echo ".SH COMMANDS"
  for command in $commands; do
    echo ".SS $command"
    echo ".nf"
    "$tool" "$command" --help | roff
    echo ".fi"
  done
  echo ".SH SEE ALSO"
  echo "The README of boardlib, installed with its sources."
} >"$out"
