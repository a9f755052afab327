# perl without_time.pl FILE: takes the time out of a type library that widl has made, where it stands
# as a text and, behind that, as a number. Two builds of one commit make the same DLL then.
use strict;
use warnings;

my ($path) = @ARGV;
open(my $file, '+<:raw', $path) or die "$path: $!\n";
local $/;
my $library = <$file>;
# The number is a variant, VT_UI4 (19) and four bytes; what fills up before it are letters W.
$library =~ s/(Created by WIDL version [0-9.]+ at ).{24}(\nW*\x13\0).{4}/$1Thu Jan  1 00:00:00 1970$2\0\0\0\0/s
  or die "$path: the time of widl is not where it is expected\n";
seek($file, 0, 0) or die "$path: $!\n";
print $file $library;
close($file) or die "$path: $!\n";
