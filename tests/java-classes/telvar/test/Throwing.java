package telvar.test;

/** Throws, each method in its own way. */
public class Throwing {
    public Throwing() {
    }

    /** A constructor that fails. */
    public Throwing(String message) {
        throw new IllegalArgumentException(message);
    }

    /** An exception with exactly these frames, and a description that is null or whatever is asked. */
    private static class Shaped extends RuntimeException {
        private static final long serialVersionUID = 1L;
        private final transient java.util.function.Supplier<String> description;
        private final transient java.util.function.Supplier<StackTraceElement[]> frames;

        Shaped(java.util.function.Supplier<String> description, java.util.function.Supplier<StackTraceElement[]> frames) {
            this.description = description;
            this.frames = frames;
        }

        @Override
        public String toString() {
            return description.get();
        }

        @Override
        public StackTraceElement[] getStackTrace() {
            return frames.get();
        }
    }

    private static StackTraceElement[] frames(int count) {
        StackTraceElement[] frames = new StackTraceElement[count];
        for (int i = 0; i < count; ++i) {
            frames[i] = new StackTraceElement("a.B", "m" + i, "B.java", i + 1);
        }
        return frames;
    }

    public void withFrames(int count) {
        throw new Shaped(() -> "described", () -> frames(count));
    }

    public void withoutFrames() {
        throw new Shaped(() -> "described", () -> new StackTraceElement[0]);
    }

    public void withNullTrace() {
        throw new Shaped(() -> "described", () -> null);
    }

    public void withThrowingTrace() {
        throw new Shaped(() -> "described", () -> {
            throw new IllegalStateException("no trace");
        });
    }

    public void withNullFrame() {
        throw new Shaped(() -> "described", () -> {
            StackTraceElement[] frames = frames(3);
            frames[1] = null;
            return frames;
        });
    }

    public void withNullDescription() {
        throw new Shaped(() -> null, () -> frames(2));
    }

    public void withThrowingDescription() {
        throw new Shaped(() -> {
            throw new IllegalStateException("no description");
        }, () -> frames(2));
    }

    public void withEmptyDescription() {
        throw new Shaped(() -> "", () -> frames(1));
    }

    public void withDescription(String description) {
        throw new Shaped(() -> description, () -> new StackTraceElement[0]);
    }

    public void withCause() {
        throw new Shaped(() -> "outer", () -> frames(1)) {
            private static final long serialVersionUID = 1L;

            @Override
            public synchronized Throwable getCause() {
                return new IllegalStateException("inner");
            }
        };
    }

    /** A real exception, thrown through {@code depth} real frames of {@link #recurse}. */
    public void throughRealFrames(int depth) {
        recurse(depth);
    }

    private static void recurse(int depth) {
        if (depth == 0) {
            throw new IllegalStateException("deep");
        }
        recurse(depth - 1);
    }

    /** The frames that {@code throughRealFrames(depth)} shows, as Java itself tells them. */
    public String framesOf(int depth) {
        try {
            throughRealFrames(depth);
            return null;
        } catch (IllegalStateException e) {
            StringBuilder text = new StringBuilder();
            StackTraceElement[] frames = e.getStackTrace();
            for (int i = 0; i <= depth + 1; ++i) {
                text.append("\r\n\t").append(frames[i]);
            }
            return text.toString();
        }
    }
}
