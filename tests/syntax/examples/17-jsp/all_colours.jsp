<%@ page contentType="text/html" %>
<%
    // Reads the visit count from the session.
    Integer visits = (Integer) session.getAttribute("visits");
    if (visits == null) visits = 0;
    /* one more
       visit */
    session.setAttribute("visits", visits + 1);
    boolean first = visits == 0 || false;
%>
<p>Visits: <%= visits + 1 %></p>
