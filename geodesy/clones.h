// Loops that are compiled twice, for every processor of the family and for those with wider vectors, and chosen at
// load. The build says where that is possible; results have the same bits, since nothing is fused or reordered.
#pragma once

#if defined(ZM_HAVE_TARGET_CLONES)
#define ZM_VECTOR_CLONES __attribute__((target_clones("avx2", "default")))
#else
#define ZM_VECTOR_CLONES
#endif
