# The renaming pass after "cp -a": one process, deepest names first, every "{NAME}" replaced by its value.
# usage: perl rename.pl FOLDER NAME=VALUE...
use strict;
use warnings;

my ($top, %values) = (shift);
for (@ARGV) {
    my ($name, $value) = split /=/, $_, 2;
    $values{$name} = $value;
}
my $pattern = join '|', map { quotemeta } keys %values;

sub pass {
    my ($folder) = @_;
    opendir my $handle, $folder or die "$folder: $!\n";
    my @names = grep { $_ ne '.' && $_ ne '..' } readdir $handle;
    closedir $handle;
    for my $name (@names) {
        my $path = "$folder/$name";
        pass($path) if lstat($path) && -d _;
        (my $new = $name) =~ s/\{($pattern)\}/$values{$1}/g;
        rename $path, "$folder/$new" or die "$path: $!\n" if $new ne $name;
    }
}
no warnings 'recursion';
pass($top);
