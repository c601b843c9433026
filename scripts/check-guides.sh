#!/usr/bin/env bash
# Checks the guides: their Markdown, with a linter; that links, anchors and named files exist; that lists are
# complete; and the texts that they quote. What a guide quotes as said by the program must be in the sources,
# and docs/support.md must explain every line and title that the program can say. The quoted texts are the first
# column of the tables that are headed Line, Title or Text; … stands for what differs from case to case.
set -euo pipefail
cd "$(dirname "$0")/.."
failed=0
mapfile -t pages < <(git ls-files --cached --others --exclude-standard -- '*.md')
mdl --style scripts/guides/markdown-style.rb "${pages[@]}" >&2 || failed=1
scripts/guides/check-links.py "${pages[@]}" || failed=1
scripts/guides/check-lists.py || failed=1

guides=(docs/support.md docs/companions.md)
mapfile -t sources < <(cmake -P cmake/print-modules.cmake | sed -nE 's/ product:.*//p' |
    sed -E 's/.*/&\/*.cpp\n&\/*.h/' | xargs git ls-files --cached --others --exclude-standard --)

perl -CSD -Mutf8 -e '
    my ($guideCount, @files) = @ARGV;
    my @guides = splice(@files, 0, $guideCount);
    my $failed = 0;
    sub complain { print STDERR "@_\n"; $failed = 1; }
    sub slurp { local $/; open my $in, "<", shift or die $!; return <$in>; }

    # Join adjacent string literals.
    my $code = "";
    for my $file (@files) {
        my $text = slurp($file);
        $text =~ s/"\s*\n\s*"//g;
        $text =~ s/\\"/\x{1}/g;
        $code .= $text . "\n";
    }
    my %table = slurp("resources/JsonLanguage/en.json") =~ /"((?:[^"\\]|\\.)*)": "((?:[^"\\]|\\.)*)"/g;
    my $said = join "\n", $code, values %table;
    $said =~ s/\x{1}/"/g;

    my %quoted;
    for my $guide (@guides) {
        my ($rows, $isQuoting) = (0, 0);
        for my $line (split /\n/, slurp($guide)) {
            $isQuoting = $1 =~ /^(Line|Title|Text)$/ if $line =~ /^\| ([^`|]*) \|/ && $line !~ /^\|-/;
            $isQuoting = 0 if $line !~ /^\|/;
            next unless $isQuoting && $line =~ /^\| (`.*?) \| /;
            ++$rows;
            for my $text ($1 =~ /`([^`]+)`/g) {
                $text =~ s/\\\|/|/g;
                $quoted{$text} = 1 if $guide eq "docs/support.md";
                for my $piece (grep { /\S/ } split /\s*…\s*/, $text) {
                    complain("$guide: the program does not say \"$piece\" (of \"$text\")")
                        unless index($said, $piece) >= 0;
                }
            }
        }
        complain("$guide has no table of quoted texts") unless $rows;
    }

    # Never shown: a run without an address ends before the download.
    my %unreachable = map { $_ => 1 } "ERR: Json url is null", "CurrentStatus: Error 1";
    my $explained = join "\n", keys %quoted;
    my $lines = 0;
    my @calls = $code =~ /(?<!::)\b(?:log|appendLog|logLine|showLine)\(((?:[^;"{]|"[^"]*")*)\);/g;
    for my $text (map { /"([^"]*)"/g } @calls) {
        $text =~ s/\x{1}/"/g;
        next if $unreachable{$text};
        ++$lines;
        for my $piece (grep { /\S/ } split /%\d/, $text) {
            $piece =~ s/^\s+|\s+$//g;
            next if length $piece < 4;
            complain("docs/support.md does not explain \"$piece\" (of \"$text\")") unless index($explained, $piece) >= 0;
        }
    }
    for my $title (grep { /^CurrentStatus: ./ && !$unreachable{$_} } values %table) {
        complain("docs/support.md does not explain the title \"$title\"") unless $quoted{$title} || $quoted{"$title…"};
    }
    complain("no calls were found in the sources") unless $lines > 40;
    print "The guides quote ", scalar(keys %quoted), " texts; the sources log $lines.\n" unless $failed;
    exit $failed;
' "${#guides[@]}" "${guides[@]}" "${sources[@]}" || failed=1
exit "$failed"
