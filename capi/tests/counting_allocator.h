/* The C++ allocator of the C interface's tests, steered from C: it counts
   the blocks alive and makes a chosen allocation fail. */
#ifndef NRV_COUNTING_ALLOCATOR_H
#define NRV_COUNTING_ALLOCATOR_H

#ifdef __cplusplus
extern "C" {
#endif

/* Blocks made by operator new (any form) and not yet released. */
long NrvTestLiveBlocks(void);
/* The nth allocation from now on throws std::bad_alloc (1: the next one);
   0 lets every allocation through. */
void NrvTestFailAllocation(long nth);
/* Whether the allocation chosen above has failed since it was chosen. */
int NrvTestAllocationFailed(void);

#ifdef __cplusplus
}
#endif

#endif /* NRV_COUNTING_ALLOCATOR_H */
