#pragma once

// Teaches the process's object factory every class that a document may hold. Loading a document does
// this itself; whoever builds objects from tags without a document calls it first. Later calls do
// nothing.
void ArtAddDocumentMakers();
