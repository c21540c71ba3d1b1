// Copying of block files: the entity section of a drawing file becomes a block definition of the open drawing, and the
// nested blocks that it refers to are copied after it. Records of files of version digits 1009 and up are turned into
// the shape of the output.
#pragma once

#include "dwg/block/block_proof.h"
#include "dwg/block/source_file.h"
#include "dwg/writer/session.h"

namespace zm::dwg {

/// Copies a block file as the block of this name, in the next slot of the block table, or leaves the drawing as it was.
/// The current layer and linetype are as before in both cases.
CopyFault CopyBlockFile(Session& session, SourceFile& source, const char* name);

}  // namespace zm::dwg
