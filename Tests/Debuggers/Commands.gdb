set confirm off
set debuginfod enabled off
set disable-randomization off
set width 0
break stopHere
run

echo text\n
up
print nullString
print emptyString
print utf8
print utf16
print withNull
print part
print record
print movedTo
print movedFrom
print edited
print nullText
print literal
print joined
print emptyFailure
print failure
print emptyView
print view
print builder
print emptyBuilder
print name
print emptyName
print point
print corruptString.value
print corruptRecord.value
print corruptText.value
print corruptFailure.value
print corruptView.value
print corruptBuilder.value
print corruptName.value
set print elements 4
print utf8
set print elements 200

continue
echo objects\n
up
print nullPointer
print root
print child
print *child
print leaf
print *root
print nullWeak
print weak
print number
print moved
print expired
print gone
print *moved.pRefCounter
print corruptPointer.value
print corruptWeak.value
print corruptNode.value

continue
echo events\n
up
print emptyDelegate
print method
print function
print callable
print emptyEvent
print pressed
print last
print added
print blocked
print asked
print corruptDelegate.value
print corruptEvent.value
print corruptConnection.value

continue
echo dispatch\n
up
print pressed
print last
print added

continue
echo geometry\n
up
print vector
print angle
print rect
print matrix
print corners
print corruptRect.value
kill
