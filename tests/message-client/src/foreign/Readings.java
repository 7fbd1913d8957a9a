package foreign;

import java.util.concurrent.atomic.AtomicInteger;

/** How often code of these classes ran because an object of theirs was read. */
public final class Readings {
    private static final AtomicInteger COUNT = new AtomicInteger();

    private Readings() {
    }

    static void note() {
        COUNT.incrementAndGet();
    }

    public static void forget() {
        COUNT.set(0);
    }

    public static int count() {
        return COUNT.get();
    }
}
