set confirm off
set print address off
set debuginfod enabled off
set disable-randomization off
break stopHere
run
up
print nullString
print emptyString
print utf8
print utf16
print withNull
print part
print record
print nullText
print literal
print joined
set print elements 4
print utf8
kill
