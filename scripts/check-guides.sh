#!/usr/bin/env bash
# Compares the guides with the sources: the program must contain each text that they quote, and docs/support.md
# must explain each log line and title of the program. The quoted texts are in the first column of tables with the
# heading Line, Title or Text; … stands for variable parts. In all tables of the guides a "|" in quoted text must
# be escaped, because it would split the cell.
set -euo pipefail
cd "$(dirname "$0")/.."
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

    for my $guide (glob "README.md docs/*.md") {
        for my $row (grep { /^\|/ } split /\n/, slurp($guide)) {
            complain("$guide: an unescaped \"|\" breaks the row of \"$1\"") if $row =~ /(`[^`|]*(?<!\\)\|[^`|]*[^ `|]`)/;
        }
    }

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
' "${#guides[@]}" "${guides[@]}" "${sources[@]}"
