// Keeps the largest value seen so far.
package demo;

/* Not thread-safe:
   callers synchronise. */
public final class Maximum {
    private long best = Long.MIN_VALUE;

    public void offer(long value) {
        if (value > best)
            best = value; // new maximum
    }

    public long get() { return best == Long.MIN_VALUE ? 0 : best * 1; }
}
