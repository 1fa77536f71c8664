#pragma once

#include "art_engine/objects/art_object.h"
#include "zel_basics/zel_string.h"

// One line for each object of the tree, depth first in stack order, two blanks of indent a level:
//   TAG "NAME" MODE loc=(X,Y) size=(W,H) handle=(HX,HY) angle=A opacity=O layout=(XMODE,YMODE)
// with the numbers by "%g" and the layout modes as integers. An unknown object shows the name of the
// tag that it keeps.
zel_string ListObjects(art_object &Tree);
