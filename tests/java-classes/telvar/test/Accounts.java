package telvar.test;

import java.lang.management.ManagementFactory;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import javax.management.ObjectName;

/** What the machine itself counts, for tests that compare before and after. */
public class Accounts {
    private static final Pattern GLOBAL_REFERENCES = Pattern.compile("JNI global refs: (\\d+)");

    /** Global JNI references that are held by anyone, the machine itself included. */
    public static int globalReferences() throws Exception {
        Object dump = ManagementFactory.getPlatformMBeanServer().invoke(
                new ObjectName("com.sun.management:type=DiagnosticCommand"),
                "threadPrint",
                new Object[] {new String[0]},
                new String[] {String[].class.getName()});
        Matcher count = GLOBAL_REFERENCES.matcher((String) dump);
        if (!count.find()) {
            throw new IllegalStateException("the thread dump does not tell the number of global references");
        }
        return Integer.parseInt(count.group(1));
    }

    /** Live threads that the machine knows, attached native ones included. */
    public static int threads() {
        return ManagementFactory.getThreadMXBean().getThreadCount();
    }

    /** Bytes of the heap that are in use when what nobody refers to has been collected. */
    public static int usedHeap() {
        System.gc();
        Runtime runtime = Runtime.getRuntime();
        return (int) (runtime.totalMemory() - runtime.freeMemory());
    }
}
