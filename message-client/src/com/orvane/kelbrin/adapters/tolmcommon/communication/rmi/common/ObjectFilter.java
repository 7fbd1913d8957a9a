package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common;

import com.orvane.kelbrin.adapters.tolmcommon.datamodel.DesktopConnection;
import java.lang.reflect.Proxy;
import java.rmi.Remote;
import java.rmi.RemoteException;
import java.rmi.server.RMIClientSocketFactory;
import java.rmi.server.RMIServerSocketFactory;
import java.util.Arrays;
import java.util.Collections;
import java.util.HashSet;
import java.util.Set;
import java.util.function.BooleanSupplier;
import java.util.function.Predicate;

/**
 * What may come out of a stream: a foreign class whose objects do harm while they are read is refused before any of
 * them is made. The runtime filters from Java 9 on; on Java 8 everything is read.
 */
public final class ObjectFilter {
    /** What a server reads. */
    public static final ObjectFilter MESSAGES = new ObjectFilter(ObjectFilter::isOfDataModel);

    /** What a client reads: answers, which are texts, the runtime's exceptions, and the reference to the server. */
    public static final ObjectFilter REPLIES = new ObjectFilter(ObjectFilter::isOfReply);

    /** Half as much again as a message nests: lists in lists that are a map's keys cost twice the time at each level. */
    private static final long DEPTH_LIMIT = 16;

    /** Elements of an array, a list or a map: more than the metrics of a machine with thousands of sessions. */
    private static final long LENGTH_LIMIT = 1_000_000;

    /** What texts, numbers, lists and maps are made of, as the runtime writes them; sub-lists and sets do not occur. */
    private static final Set<String> BASICS = names("java.lang.Object", "java.lang.String", "java.lang.Number",
            "java.lang.Boolean", "java.lang.Character", "java.lang.Byte", "java.lang.Short", "java.lang.Integer",
            "java.lang.Long", "java.lang.Float", "java.lang.Double", "java.lang.Enum", "java.util.ArrayList",
            "java.util.Arrays$ArrayList", "java.util.HashMap", "java.util.LinkedHashMap", "java.util.TreeMap",
            "java.util.Map$Entry", "java.util.CollSer", "java.util.Collections$EmptyList",
            "java.util.Collections$EmptyMap", "java.util.Collections$SingletonList",
            "java.util.Collections$SingletonMap", "java.util.Collections$UnmodifiableCollection",
            "java.util.Collections$UnmodifiableList", "java.util.Collections$UnmodifiableRandomAccessList",
            "java.util.Collections$UnmodifiableMap");

    /** What RMI's references and an exception's stack trace are made of. */
    private static final Set<String> REFERENCE = names("java.lang.StackTraceElement", "java.lang.reflect.Proxy",
            "java.rmi.Remote", "java.rmi.server.RemoteObject", "java.rmi.server.RemoteObjectInvocationHandler",
            "java.rmi.server.ObjID", "java.rmi.server.UID", "java.rmi.dgc.Lease", "java.rmi.dgc.VMID",
            MessageServer.class.getName(), MessageClientSocketFactory.class.getName());

    private static final String DATA_MODEL = DesktopConnection.class.getPackage().getName() + ".";

    private final Predicate<Class<?>> accepted;

    private ObjectFilter(Predicate<Class<?>> accepted) {
        this.accepted = accepted;
    }

    /** Exports a server that reads through this filter. */
    public Remote export(Remote server, int port, RMIClientSocketFactory clientSockets,
            RMIServerSocketFactory serverSockets) throws RemoteException {
        return RuntimeFilter.export(server, port, clientSockets, serverSockets, this);
    }

    /**
     * Has every stream of the process read through this filter while the reading thread is in the given state. The
     * runtime offers no narrower way to filter what RMI's client side reads.
     */
    void installWhile(BooleanSupplier state) {
        if (!RuntimeFilter.install(this, state)) {
            InstanceLoggerFactory.getLogger()
                    .warning("replies are not filtered: this runtime cannot do it, or filters already");
        }
    }

    /** Whether an object may be read: of this class or none, of this length or -1, this deep in others. */
    boolean accepts(Class<?> typeOrNull, long arrayLength, long depth) {
        if (depth > DEPTH_LIMIT || arrayLength > LENGTH_LIMIT) {
            return false;
        }
        if (typeOrNull == null) {
            return true;
        }
        Class<?> type = typeOrNull;
        while (type.isArray()) {
            type = type.getComponentType();
        }
        return type.isPrimitive() || BASICS.contains(type.getName()) || accepted.test(type);
    }

    private static boolean isOfDataModel(Class<?> type) {
        return type.getName().startsWith(DATA_MODEL);
    }

    /** A reference is a proxy, of a class made on the spot; its interfaces and handler are asked about one by one. */
    private static boolean isOfReply(Class<?> type) {
        return isException(type) || REFERENCE.contains(type.getName()) || Proxy.isProxyClass(type);
    }

    private static boolean isException(Class<?> type) {
        return Throwable.class.isAssignableFrom(type)
                && (type.getName().startsWith("java.") || type.getName().startsWith("javax.net.ssl."));
    }

    private static Set<String> names(String... names) {
        return Collections.unmodifiableSet(new HashSet<>(Arrays.asList(names)));
    }
}
